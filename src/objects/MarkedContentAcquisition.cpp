#include <Quillet/GroupObject.h>

#include "document/Limits.h"
#include <Quillet/Budget.h>
#include <Quillet/Page.h>

#include <algorithm>
#include <utility>

namespace Quillet {

namespace {

using Children = GroupObject::Children;

/// The groups from the one that holds `object` to the topmost; the walk ends at a parent that is no group.
std::vector<GroupObject*> CollectGroupsAbove(const Object& object)
{
    std::vector<GroupObject*> groups;
    for (Object* above = object.parent.Get(); above && above->AsGroup(); above = above->parent.Get()) {
        groups.push_back(above->AsGroup());
    }
    return groups;
}

/// How many of `groups`, which lead upward to `root`, do not hold the newest object of the tree: the one reached from
/// the root by always going to the last child.
std::size_t CountGroupsOffNewest(const std::vector<GroupObject*>& groups, const Object* root)
{
    std::size_t count = groups.size();
    const Object* newest = root;
    while (count > 0 && groups[count - 1] == newest && !groups[count - 1]->children.empty()) {
        newest = groups[--count]->children.back().Get();
    }
    return count;
}

/// From the back: what is sought was the last child when it was noted.
Children::const_iterator FindFromBack(const Children& children, const Object* object)
{
    const auto found = std::find_if(children.rbegin(), children.rend(),
                                    [object](const Kernel::Counted<Object>& child) { return child.Get() == object; });
    return found == children.rend() ? children.end() : std::prev(found.base());
}

} // namespace

Kernel::Counted<GroupObject> GroupObject::AcquireMarkedContent(const Kernel::Counted<Object>& previous)
{
    if (!previous) return nullptr;
    Object* const root = previous->GetRoot().Get();

    // An empty group was the place that the content then went to, so the content lies in it and not behind it.
    const GroupObject* previousGroup = previous->AsGroup();
    const bool hadContent = previousGroup && !previousGroup->children.empty();

    const std::vector<GroupObject*> groups = CollectGroupsAbove(*previous);
    // A page of many sequences inside many clips is done long before it is read.
    if (!Budget::Spend(Limits::c_operatorUnits * groups.size())) return nullptr;
    const std::size_t offNewest = CountGroupsOffNewest(groups, root);
    const Object* mark = previous.Get();
    for (std::size_t i = 0; i < offNewest; ++i) {
        const Children& siblings = groups[i]->children;
        if (siblings.empty()) return nullptr;
        const Kernel::Counted<Object>& edge = hadContent ? siblings.front() : siblings.back();
        if (edge.Get() != mark) return nullptr;
        mark = groups[i];
    }

    if (offNewest == groups.size()) {
        const Kernel::Counted<GroupObject> top = root->AsGroup();
        if (top) AcquireContent(top, top->children.begin());
        return top;
    }
    const Kernel::Counted<GroupObject> source = groups[offNewest];
    Children::const_iterator first = FindFromBack(source->children, mark);
    if (!hadContent && first != source->children.end()) ++first;
    AcquireContent(source, first);
    return source;
}

} // namespace Quillet
