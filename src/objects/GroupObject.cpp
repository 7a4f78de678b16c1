#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>
#include <Quillet/TreeWalk.h>

#include "objects/SoftMask.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Quillet {

namespace {

/// The first object below `root`, groups aside, for which `test` holds, in paint order; null if there is none.
template <typename Test>
const Object* FindLeaf(const GroupObject& root, Test test)
{
    struct Search : TreePass<>
    {
        explicit Search(Test& wanted) : test(wanted) {}

        Step Visit(const Object& leaf, const std::monostate&) override
        {
            if (!test(leaf)) return Step::On;
            found = &leaf;
            return Step::End;
        }

        Test& test;
        const Object* found = nullptr;
    } search(test);
    WalkTree(root, search);
    return search.found;
}

} // namespace

GroupObject::GroupObject(Kind newKind, Kernel::Counted<const Page> newPage) : Object(newKind), page(std::move(newPage))
{
    if (page) id = page->MakeObjectId();
}

GroupObject::GroupObject(Kernel::Counted<const Page> newPage) : GroupObject(Kind::Group, std::move(newPage)) {}

GroupObject::GroupObject(Kernel::Counted<const Page> newPage, const Geometry::PolyCurveDbl& path,
                         Geometry::WindingOrderMode winding, const Params& pathTransform)
    : GroupObject(std::move(newPage))
{
    const Kernel::Counted<Geometry::PolyCurveDbl> clip = path.Clone();
    clip->Transform(pathTransform);
    SetClipPath(clip, winding);
}

GroupObject::~GroupObject()
{
    ReleaseChildren();
}

void GroupObject::ReleaseChildren() noexcept
{
    const auto orphan = [](GroupObject* group) {
        for (const Kernel::Counted<Object>& child : group->children) {
            if (child && child->parent.Get() == group) child->parent = nullptr;
        }
        return std::exchange(group->children, {});
    };
    // A group would release its children by recursion, which deep trees have no stack for: so whatever is about to go
    // is emptied first.
    Children doomed = orphan(this);
    while (!doomed.empty()) {
        const Kernel::Counted<Object> object = std::move(doomed.back());
        doomed.pop_back();
        GroupObject* group = object ? object->AsGroup() : nullptr;
        if (!group || group->children.empty() || group->GetReferenceCount() > 1) continue;
        Children below = orphan(group);
        doomed.insert(doomed.end(), std::make_move_iterator(below.begin()), std::make_move_iterator(below.end()));
    }
}

bool GroupObject::PreciseIsContainedIn(const Rect& rect, double tolerance) const
{
    return !FindLeaf(*this, [&](const Object& leaf) { return !leaf.PreciseIsContainedIn(rect, tolerance); });
}

bool GroupObject::PreciseOverlaps(const Rect& rect, double tolerance) const
{
    return FindLeaf(*this, [&](const Object& leaf) { return leaf.PreciseOverlaps(rect, tolerance); });
}

bool GroupObject::HasText() const
{
    return FindLeaf(*this, [](const Object& leaf) { return leaf.HasText(); });
}

bool GroupObject::IsPreserve() const
{
    return IsPreserveWith(children.size());
}

bool GroupObject::IsPreserveWith(std::size_t childCount) const
{
    return IsLayer() || !name.empty() || IsTransparencyGroup() || (isXObject && childCount > 1);
}

bool GroupObject::IsTransparencyGroup() const
{
    return opacity != 1.0 || isIsolated || isKnockout || blendMode != Renderer::FillBlendMode::Normal || softMask;
}

Kernel::NonCounted<const Page> GroupObject::GetPage() const
{
    return page ? Kernel::NonCounted<const Page>(page) : Object::GetPage();
}

Kernel::Counted<GroupObject> GroupObject::MakeTwin() const
{
    auto twin = Kernel::MakeCounted<GroupObject>(page);
    twin->SetTransform(transform);
    twin->SetSoftMask(softMask);
    twin->clipPath = clipPath;
    twin->clipWinding = clipWinding;
    twin->opacity = opacity;
    twin->isIsolated = isIsolated;
    twin->isKnockout = isKnockout;
    twin->isXObject = isXObject;
    twin->blendMode = blendMode;
    return twin;
}

void GroupObject::Clear()
{
    ReleaseChildren();
    Object::Clear();
}

void GroupObject::UpdateBBox()
{
    Rect box;
    for (const Kernel::Counted<Object>& child : children) {
        const Rect& other = child->transformedBBox;
        if (other.GetWidth() == 0 || other.GetHeight() == 0) continue;
        const bool isFlat = box.GetWidth() == 0 || box.GetHeight() == 0;
        box = isFlat ? other : box.Union(other);
    }
    SetBBox(box);
}

void GroupObject::Add(Kernel::Counted<Object> object)
{
    object->parent = this;
    children.push_back(std::move(object));
}

GroupObject::Children::iterator GroupObject::Insert(Children::const_iterator position, Kernel::Counted<Object> object)
{
    object->parent = this;
    return children.insert(position, std::move(object));
}

GroupObject::Children::iterator GroupObject::Insert(Children::const_iterator position, Children::const_iterator first,
                                                    Children::const_iterator last)
{
    std::for_each(first, last, [this](const Kernel::Counted<Object>& object) { object->parent = this; });
    return children.insert(position, first, last);
}

void GroupObject::AcquireContent(const Kernel::Counted<GroupObject>& other, Children::const_iterator first)
{
    const auto begin = other->children.begin() + (first - other->children.cbegin());
    const auto end = other->children.end();
    std::for_each(begin, end, [this](const Kernel::Counted<Object>& object) { object->parent = this; });
    children.insert(children.end(), std::make_move_iterator(begin), std::make_move_iterator(end));
    other->children.erase(begin, end);
}

bool GroupObject::IsAncestorOf(Kernel::NonCounted<const Object> object) const
{
    const Object* above = object->parent.Get();
    while (above && above != this)
        above = above->parent.Get();
    return above;
}

void GroupObject::UpdateBBoxes()
{
    VisitSubGroups([](GroupObject* group) { group->UpdateBBox(); });
}

void GroupObject::VisitSubGroups(const std::function<void(GroupObject*)>& visitor)
{
    struct Pass : TreePass<std::monostate, GroupObject>
    {
        explicit Pass(const std::function<void(GroupObject*)>& visit) : visitor(visit) {}

        void Leave(GroupObject& group, const std::monostate&) override { visitor(&group); }

        const std::function<void(GroupObject*)>& visitor;
    } pass(visitor);
    WalkTree(*this, pass);
}

} // namespace Quillet
