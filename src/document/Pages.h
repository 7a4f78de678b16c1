#pragma once

#include <Quillet/PageBase.h>

#include <vector>

namespace Quillet {

/// An inner node of the page tree. Its kids are built when a page in or behind them is asked for.
class QUILLET_API Pages : public PageBase
{
public:
    Pages(Kernel::NonCounted<const PageBase> parentNode, Dictionary& dictionary, int firstIndex);

    int GetPageCount() const override { return count; }
    /// Raises PageTree for an index that no kid claims. A kid that does not build claims one, and raises what is wrong.
    Kernel::Counted<const Page> GetPage(int index) const override;

    /// The node of a reference, from the object's cache or built now; null if the table does not list the object. A
    /// node keeps the parent and the first page that it was first built with.
    static Kernel::Counted<const PageBase> GetPageTree(const Ref& ref, int firstPage,
                                                       Kernel::NonCounted<const Pages> parent);
    static bool IsPages(Dictionary& dictionary);

    int count;
    std::vector<Ref> kids;

private:
    Kernel::Counted<const PageBase> GetKid(const Ref& kid, int kidFirstPage) const;

    /// For the kids walked so far, the page behind each one's last: later look-ups go straight to their kid.
    mutable std::vector<long long> kidEnds;
};

} // namespace Quillet
