#include "objects/reduction/Reduce.h"

#include <Quillet/TreeWalk.h>

#include <iterator>

namespace Quillet::Reduction {

namespace {

/// Keeps the objects that the groups it is in will have in one row, innermost last. A group that goes leaves its part
/// of the row to the group above, at no cost; one that stays takes its part out and stands in the row itself.
class Flattening : public TreePass<std::monostate, GroupObject>
{
public:
    Step Enter(GroupObject&, std::monostate&) override
    {
        starts.push_back(row.size());
        return Step::On;
    }

    Step Visit(Object& leaf, const std::monostate&) override
    {
        row.emplace_back(&leaf);
        return Step::On;
    }

    void Leave(GroupObject& group, const std::monostate&) override
    {
        const auto first = row.begin() + static_cast<std::ptrdiff_t>(starts.back());
        starts.pop_back();
        const auto count = static_cast<std::size_t>(row.end() - first);
        const bool isRoot = starts.empty();
        if (!isRoot && count == 1) MoveClipDown(group, **first);
        if (!isRoot && !group.clipPath && !group.IsPreserveWith(count)) {
            group.parent = nullptr;
            group.children.clear();
            return;
        }
        GroupObject::Children own(std::make_move_iterator(first), std::make_move_iterator(row.end()));
        row.erase(first, row.end());
        for (const Kernel::Counted<Object>& child : own)
            child->parent = &group;
        group.children = std::move(own);
        if (!isRoot) row.emplace_back(&group);
    }

private:
    static void MoveClipDown(GroupObject& group, Object& only)
    {
        if (!group.clipPath || only.clipPath) return;
        const Kernel::Counted<Geometry::PolyCurveDbl> clip = group.clipPath->Clone();
        clip->Transform(only.transform.GetInverse());
        only.SetClipPath(clip, group.clipWinding);
        group.ClearClipPath();
    }

    GroupObject::Children row;
    std::vector<std::size_t> starts;
};

} // namespace

void FlattenSubGroups(GroupObject& root)
{
    Flattening pass;
    WalkTree(root, pass);
}

} // namespace Quillet::Reduction
