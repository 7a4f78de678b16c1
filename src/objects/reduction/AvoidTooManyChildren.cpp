#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>

namespace Quillet {

namespace {

/// Applications grow slow on larger groups.
constexpr std::size_t c_largestGroup = 5000;

} // namespace

void GroupObject::AvoidTooManyChildren()
{
    const Kernel::Counted<const Page> groupPage(GetPage().Get());
    while (children.size() > c_largestGroup) {
        const Children all = std::move(children);
        const std::size_t groupCount = (all.size() + c_largestGroup - 1) / c_largestGroup;
        children.clear();
        auto first = all.begin();
        for (std::size_t left = groupCount; left > 0; --left) {
            const auto last = first + (all.end() - first) / static_cast<std::ptrdiff_t>(left);
            auto group = Kernel::MakeCounted<GroupObject>(groupPage);
            group->Insert(group->children.end(), first, last);
            group->UpdateBBox();
            Add(std::move(group));
            first = last;
        }
    }
}

} // namespace Quillet
