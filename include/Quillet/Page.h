#pragma once

#include <Quillet/Budget.h>
#include <Quillet/PageBase.h>

#include <Kernel/Font.h>

#include <unordered_set>
#include <vector>

namespace Quillet {

class Font;
class GroupObject;
class SequentialSource;

/// A page. It stays valid while it is held, but its document must outlive its use.
class QUILLET_API Page : public PageBase
{
public:
    int GetPageCount() const override { return 1; }
    Kernel::Counted<const Page> GetPage(int index) const override;

    /// Runs the content and gives the tree of what it paints, in points, y downward, from the top left of the rotated
    /// trim box. Stops early, with what there is, once the host's abort flag is set. Faults in the content are
    /// recorded; only fatal kinds are thrown.
    Kernel::Counted<GroupObject> BuildObjects() const;

    // Not for hosts.

    using PageBase::PageBase;
    /// The streams of the page's content; raises PageTree if the object says that it is no page.
    std::vector<Ref> GetContents() const;
    /// The content, joined.
    Kernel::Counted<SequentialSource> GetContentsStream() const;
    /// Appends what the fonts in the page's resources ask for, each font of the file once for all calls with one
    /// `seen`.
    void GetFonts(std::vector<Kernel::Font>& fonts, std::unordered_set<const Font*>& seen) const;

private:
    /// For what is read of this page.
    Budget::Scope OpenScope() const;
};

} // namespace Quillet
