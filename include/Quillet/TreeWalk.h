#pragma once

#include <Quillet/GroupObject.h>

#include <cstddef>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace Quillet {

/// What a walk does next.
enum class Step : unsigned char {
    On,
    Past, ///< From a group that is not entered, on to what follows it: nothing below is visited, nor is it left.
    End,  ///< Nothing more is entered or visited. The groups that the walk is in are left, the innermost first.
};

/// What `WalkTree` calls on the objects of a tree.
///
/// `Level` is what a pass gathers on the way down, the clips so far for instance: a group begins with a copy of what
/// the group above it has, and changes to it hold for what is below. `Group` is `GroupObject` for passes that change
/// the tree.
///
/// All calls come on the thread that calls `WalkTree`, before it returns.
template <typename Level = std::monostate, typename Group = const GroupObject>
class TreePass
{
public:
    using Leaf = std::conditional_t<std::is_const_v<Group>, const Object, Object>;

    virtual ~TreePass() = default;

    /// Before a group's children, which it may change; not its parent's.
    virtual Step Enter(Group& /*group*/, Level& /*level*/) { return Step::On; }
    /// An object that is no group, with the level of the group that holds it.
    virtual Step Visit(Leaf& /*leaf*/, const Level& /*level*/) { return Step::On; }
    /// After a group's children, which it may change; not its parent's.
    virtual void Leave(Group& /*group*/, const Level& /*level*/) {}
};

/// Takes a pass over `root` and all that is below, in paint order; `level` is what the root begins with.
///
/// Trees may be deeper than a thread's stack is, so the walk keeps its own: a node costs the same at any depth. Null
/// children are left out.
template <typename Level, typename Group>
void WalkTree(std::type_identity_t<Group>& root, TreePass<Level, Group>& pass,
              std::type_identity_t<Level> level = Level())
{
    struct Visit
    {
        Group* group;
        Level level;
        std::size_t next = 0;
    };
    std::vector<Visit> visits;
    const auto enter = [&](Group& group, Level own) {
        const Step step = pass.Enter(group, own);
        if (step == Step::On) visits.push_back({&group, std::move(own)});
        return step;
    };
    Step step = enter(root, std::move(level));
    while (!visits.empty()) {
        Visit& visit = visits.back();
        if (step == Step::End || visit.next == visit.group->children.size()) {
            pass.Leave(*visit.group, visit.level);
            visits.pop_back();
            continue;
        }
        typename TreePass<Level, Group>::Leaf* const child = visit.group->children[visit.next++].Get();
        if (!child) continue;
        Group* const group = child->AsGroup();
        step = group ? enter(*group, visit.level) : pass.Visit(*child, visit.level);
    }
}

} // namespace Quillet
