#pragma once

#include <Quillet/GroupObject.h>

#include <Kernel/Export.h>

#include <span>
#include <vector>

/// How a tree as it was built becomes one that people can edit: passes over the whole tree, one after another, none of
/// which has to run twice.
///
/// Most passes look at one group at a time and are operations of `GroupObject`. The others, which carry something down
/// or up the tree so that deep trees cost no more than flat ones, are declared here. Each pass has a file of its own.
namespace Quillet::Reduction {

using Rect = Object::Rect;

/// When a pass runs.
enum class Condition : unsigned char {
    Always,
    EditableText,  ///< unless the text is to look exactly as in the file
    EditableLines, ///< with editable text, if lines are to become columns
};

struct QUILLET_API Pass
{
    const char* name;
    /// On the tree below `root`; `pageRect` is the page in page space.
    void (*run)(GroupObject& root, const Rect& pageRect);
    Condition condition = Condition::Always;

    bool IsDue(const GroupObject& root) const;
};

/// The passes of `GroupObject::Reduce`, in their order.
QUILLET_API std::span<const Pass> GetPasses();

/// Drops what stands outside the clips of the groups it is in, and brings all boxes up to date. Layers and groups that
/// must be preserved stay. `root` has nothing above it.
QUILLET_API void RemoveClippedObjects(GroupObject& root);
/// Takes away rectangular clips that cut nothing: those that are the page's edge, and those that hold all outlines.
QUILLET_API void RemoveRedundantClipping(GroupObject& root, const Rect& pageRect);
/// Puts the children of groups that say nothing in place of the group. The clip of a single object becomes its own.
QUILLET_API void FlattenSubGroups(GroupObject& root);
/// `GroupObject::ReorderText` on every group.
QUILLET_API void ReorderText(GroupObject& root);

/// Empties the places of `children` for which `isGone` holds, in one sweep; objects that others hold live on without a
/// parent.
template <typename Test>
void EraseChildren(GroupObject& group, Test isGone)
{
    std::erase_if(group.children, [&](const Kernel::Counted<Object>& child) {
        if (!isGone(*child)) return false;
        child->parent = nullptr;
        return true;
    });
}

} // namespace Quillet::Reduction
