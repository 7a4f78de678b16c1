#include "document/Pages.h"

#include "document/Dictionary.h"
#include "document/Guard.h"

#include <Quillet/Budget.h>
#include <Quillet/Page.h>

#include <algorithm>
#include <limits>

namespace Quillet {

Pages::Pages(Kernel::NonCounted<const PageBase> parentNode, Dictionary& dictionary, int firstIndex)
    : PageBase(parentNode, dictionary, firstIndex), count(dictionary.GetInt("Count", 0))
{
    if (!Check(count >= 0, Error::PageTree)) count = 0;
    dictionary.GetRefVec("Kids", kids);
}

Kernel::Counted<const Page> Pages::GetPage(int index) const
{
    Guard::Descent descent;
    if (!Check(static_cast<bool>(descent), Error::PageTree)) return nullptr;

    auto i = static_cast<std::size_t>(std::upper_bound(kidEnds.begin(), kidEnds.end(), index) - kidEnds.begin());
    long long first = i == 0 ? firstPage : kidEnds[i - 1];
    for (; i < kids.size(); ++i) {
        constexpr long long c_lastPage = std::numeric_limits<int>::max();
        Kernel::Counted<const PageBase> kid;
        try {
            kid = GetKid(kids[i], static_cast<int>(std::min(first, c_lastPage)));
        } catch (Error::Type) {
            if (Budget::IsSpent()) throw;
            // A kid that does not build is a page that is damaged; those behind it keep their places.
            if (i == kidEnds.size()) kidEnds.push_back(first + 1);
            if (index == first++) throw;
            continue;
        }
        // A kid that the file does not have holds no pages; those behind it are still there.
        if (kid) {
            first += kid->GetPageCount();
        } else if (Budget::IsSpent()) {
            // A kid that could not be paid for may still be there.
            return nullptr;
        }
        if (i == kidEnds.size()) kidEnds.push_back(first);
        if (kid && index < first) return kid->GetPage(index);
    }
    OnError(Error::PageTree);
    return nullptr;
}

Kernel::Counted<const PageBase> Pages::GetKid(const Ref& kid, int kidFirstPage) const
{
    return GetPageTree(kid, kidFirstPage, this);
}

Kernel::Counted<const PageBase> Pages::GetPageTree(const Ref& ref, int firstPage,
                                                   Kernel::NonCounted<const Pages> parent)
{
    if (Kernel::Counted<const PageBase> cached = ref.GetCache<PageBase>()) return cached;
    Dictionary dictionary(ref, nullptr, Error::PageTree);
    Kernel::Counted<const PageBase> node;
    if (IsPages(dictionary)) {
        node = Kernel::MakeCounted<Pages>(parent, dictionary, firstPage);
    } else {
        node = Kernel::MakeCounted<Page>(parent, dictionary, firstPage);
    }
    ref.SetCache(node);
    return ref.GetCache<PageBase>();
}

bool Pages::IsPages(Dictionary& dictionary)
{
    return dictionary.Has("Kids") || dictionary.Has("Count");
}

} // namespace Quillet
