#include <Quillet/GroupObject.h>

#include <iterator>

namespace Quillet {

namespace {

using Children = GroupObject::Children;

constexpr double c_rectangleTolerance = 1e-6;
constexpr double c_containmentTolerance = 1e-5;

/// Appends `object` to `target`, which is to be the new content of `group`, as a child of `group`. Groups with the same
/// clip, which say nothing beside it, vanish, and what they hold is appended instead.
void Merge(GroupObject& group, Children& target, Kernel::Counted<Object> object)
{
    Children pending;
    pending.push_back(std::move(object));
    while (!pending.empty()) {
        Kernel::Counted<Object> next = std::move(pending.back());
        pending.pop_back();
        GroupObject* const inner = next->AsGroup();
        if (inner && !inner->IsPreserve() && inner->HasSameClip(&group)) {
            inner->parent = nullptr;
            std::move(inner->children.rbegin(), inner->children.rend(), std::back_inserter(pending));
            inner->children.clear();
            continue;
        }
        next->parent = &group;
        target.push_back(std::move(next));
    }
}

/// The children of a group as a chain out of which runs are taken, so that no clip costs more than what it takes in.
class Siblings
{
public:
    explicit Siblings(Children& children) : objects(std::move(children)), places(objects.size())
    {
        for (std::size_t i = 0; i < places.size(); ++i)
            places[i] = {i - 1, i + 1};
    }

    /// Takes the neighbours of the clip group at `place` that stand within its clip into it. What was taken in itself
    /// takes nothing any more.
    void Extend(std::size_t place)
    {
        const Kernel::Counted<GroupObject> group = objects[place] ? objects[place]->AsGroup() : nullptr;
        if (!group || group->IsPreserve() || !group->clipPath->IsRectangle(c_rectangleTolerance)) return;
        const Object::Rect clip = group->clipPath->GetApproxBBox();
        // The place before the first wraps round to one beyond the last.
        const auto isInside = [&](std::size_t i) {
            return i < objects.size() && objects[i]->IsContainedIn(clip, c_containmentTolerance);
        };
        std::size_t before = place, after = place;
        do
            before = places[before].previous;
        while (isInside(before));
        do
            after = places[after].next;
        while (isInside(after));

        Place& own = places[place];
        if (own.previous == before && own.next == after) return;
        Children content;
        for (std::size_t i = Next(before); i != place; i = places[i].next)
            Merge(*group, content, std::move(objects[i]));
        std::move(group->children.begin(), group->children.end(), std::back_inserter(content));
        for (std::size_t i = own.next; i != after; i = places[i].next)
            Merge(*group, content, std::move(objects[i]));
        group->children = std::move(content);
        group->UpdateBBox();

        own = {before, after};
        if (before < objects.size())
            places[before].next = place;
        else
            first = place;
        if (after < objects.size()) places[after].previous = place;
    }

    /// What is left, in order.
    Children Take()
    {
        std::erase(objects, nullptr);
        return std::move(objects);
    }

private:
    struct Place
    {
        std::size_t previous, next;
    };

    std::size_t Next(std::size_t place) const { return place < places.size() ? places[place].next : first; }

    Children objects;
    std::vector<Place> places;
    std::size_t first = 0;
};

} // namespace

/// Many producers clip each object of a run by the same rectangle, or go on in it without a clip: one group for all of
/// them is enough.
void GroupObject::ExtendClippingGroups()
{
    std::vector<std::size_t> clips;
    for (std::size_t i = 0; i < children.size(); ++i) {
        const GroupObject* group = children[i]->AsGroup();
        if (group && group->clipPath) clips.push_back(i);
    }
    if (clips.empty() || children.size() < 2) return;
    Siblings siblings(children);
    for (const std::size_t place : clips)
        siblings.Extend(place);
    children = siblings.Take();
}

} // namespace Quillet
