// Brings text objects next to each other, so that lines with graphics between them can join.

#include "document/Limits.h"
#include "objects/BoxIndex.h"
#include "objects/reduction/Reduce.h"

#include <Quillet/Budget.h>
#include <Quillet/GroupObject.h>
#include <Quillet/TreeWalk.h>

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace Quillet {

namespace {

constexpr double c_tolerance = 1e-5;

/// Objects in paint order, found by their boxes.
class Block
{
public:
    using Objects = GroupObject::Children;

    void Add(Kernel::Counted<Object> object)
    {
        index.Set(objects.size(), object->transformedBBox);
        objects.push_back(std::move(object));
    }

    /// Whether some object of the block and `object` cover a common place.
    bool Meets(const Object& object) const
    {
        return !index.VisitNear(object.transformedBBox.Inflated(c_tolerance), [&](std::size_t i) {
            return i < first || !object.Overlaps(objects[i]->transformedBBox, c_tolerance);
        });
    }

    bool IsEmpty() const { return first == objects.size(); }

    /// How many objects at the front cover nothing that `other` does.
    std::size_t CountFree(const Block& other) const
    {
        std::size_t count = 0;
        while (first + count < objects.size() && !other.Meets(*objects[first + count]))
            ++count;
        return count;
    }

    /// Moves the first `count` objects to the end of `target`.
    template <typename Target>
    void MoveFront(std::size_t count, Target add)
    {
        for (; count > 0; --count)
            add(std::move(objects[first++]));
    }

    void MoveAll(Objects& target)
    {
        MoveFront(objects.size() - first, [&target](Kernel::Counted<Object> object) { target.push_back(object); });
        *this = Block();
    }

private:
    Objects objects;
    std::size_t first = 0;
    BoxIndex index;
};

template <typename HasText>
void Reorder(GroupObject::Children& children, HasText hasText)
{
    // What is done, then text, then other objects, then the text that comes next: its front moves down to the text if
    // the objects between are not in its way; those that were in the way of none of the text move below it.
    GroupObject::Children done;
    done.reserve(children.size());
    Block text;
    Block between;
    std::size_t next = 0;
    const auto take = [&](Block& block, bool isText) {
        while (next < children.size() && children[next] && hasText(*children[next]) == isText)
            block.Add(std::move(children[next++]));
    };
    take(text, true);
    while (true) {
        take(between, false);
        Block behind;
        take(behind, true);
        if (behind.IsEmpty()) break;
        const auto join = [&text](Kernel::Counted<Object> object) { text.Add(std::move(object)); };
        if (!between.IsEmpty()) behind.MoveFront(behind.CountFree(between), join);
        if (!behind.IsEmpty()) {
            between.MoveFront(between.CountFree(text),
                              [&done](Kernel::Counted<Object> object) { done.push_back(object); });
            if (between.IsEmpty()) {
                GroupObject::Children rest;
                behind.MoveAll(rest);
                for (Kernel::Counted<Object>& object : rest)
                    join(std::move(object));
            } else {
                text.MoveAll(done);
                between.MoveAll(done);
                text = std::move(behind);
            }
        }
    }
    text.MoveAll(done);
    between.MoveAll(done);
    children.erase(children.begin(), children.begin() + static_cast<std::ptrdiff_t>(next));
    children.insert(children.begin(), std::make_move_iterator(done.begin()), std::make_move_iterator(done.end()));
}

/// A group has text if one below it has: what was found there need not be looked for again.
class TextReordering : public TreePass<std::monostate, GroupObject>
{
public:
    void Leave(GroupObject& group, const std::monostate&) override
    {
        const auto hasText = [this](const Object& child) {
            return child.AsGroup() ? groupsWithText.contains(&child) : child.HasText();
        };
        const bool hasAny = std::ranges::any_of(
            group.children, [&](const Kernel::Counted<Object>& child) { return child && hasText(*child); });
        if (!hasAny) return;
        groupsWithText.insert(&group);
        Reorder(group.children, hasText);
    }

private:
    std::unordered_set<const Object*> groupsWithText;
};

} // namespace

void GroupObject::ReorderText()
{
    Reorder(children, [](const Object& child) { return child.HasText(); });
}

void Reduction::ReorderText(GroupObject& root)
{
    TextReordering pass;
    WalkTree(root, pass);
}

} // namespace Quillet
