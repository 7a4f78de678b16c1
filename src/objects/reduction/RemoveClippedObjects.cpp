#include "objects/reduction/Reduce.h"

#include <Quillet/TreeWalk.h>

#include <optional>

namespace Quillet::Reduction {

namespace {

constexpr double c_overlapTolerance = 1e-5;

/// What all clips so far leave; nothing if there was none. Where clips are apart, the rectangle of zeros.
using ClipBox = std::optional<Rect>;

/// Clips stay as they are, so that what a group is cut by is known on the way down, before what is below it goes.
struct ClippedObjects : TreePass<ClipBox, GroupObject>
{
    Step Enter(GroupObject& group, ClipBox& clip) override
    {
        if (group.clipPath) {
            const Rect own = group.clipPath->GetExactBBox();
            clip = clip ? clip->Intersection(own) : own;
        }
        return Step::On;
    }

    void Leave(GroupObject& group, const ClipBox& clip) override
    {
        if (clip) {
            EraseChildren(group, [&](const Object& child) {
                return !child.Overlaps(*clip, c_overlapTolerance) && !child.IsPreserve();
            });
        }
        group.UpdateBBox();
    }
};

} // namespace

void RemoveClippedObjects(GroupObject& root)
{
    ClippedObjects pass;
    WalkTree(root, pass);
}

} // namespace Quillet::Reduction
