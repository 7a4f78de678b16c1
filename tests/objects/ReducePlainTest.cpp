#include "MakeObjects.h"
#include "support/RandomTree.h"

#include "objects/reduction/Reduce.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <random>
#include <vector>

/// The passes that are written for speed do what these plain ones do, which ask no more than one group at a time and
/// walk up and down the tree for it.
namespace Quillet::Test {
namespace {

void RemoveClippedObjects(GroupObject& group)
{
    std::optional<Rect> clip;
    for (Object* above = &group; above; above = above->parent.Get()) {
        if (!above->clipPath) continue;
        const Rect own = above->clipPath->GetExactBBox();
        clip = clip ? clip->Intersection(own) : own;
    }
    if (clip) {
        std::erase_if(group.children, [&](const Kernel::Counted<Object>& child) {
            return !child->Overlaps(*clip, 1e-5) && !child->IsPreserve();
        });
    }
    group.UpdateBBox();
}

void RemoveRedundantClipping(GroupObject& group, const Rect& pageRect)
{
    if (!group.clipPath || !group.clipPath->IsRectangle(1e-6)) return;
    const Rect box = group.clipPath->GetApproxBBox();
    const bool isPage = IsNear(box, pageRect, 0.0625);
    const bool isIdle = std::ranges::all_of(
        group.children, [&](const Kernel::Counted<Object>& child) { return child->PreciseIsContainedIn(box, 0.0625); });
    if (!isPage && !isIdle) return;
    group.ClearClipPath();
    group.UpdateBBox();
}

using Iterator = GroupObject::Children::iterator;

Iterator Merge(GroupObject& group, Iterator target, const GroupObject::Children& objects)
{
    for (const Kernel::Counted<Object>& object : objects) {
        const GroupObject* inner = object->AsGroup();
        if (inner && !inner->IsPreserve() && inner->HasSameClip(&group)) {
            target = Merge(group, target, inner->children);
        } else {
            target = group.Insert(target, object) + 1;
        }
    }
    return target;
}

void ExtendClippingGroup(GroupObject& group, const Kernel::Counted<GroupObject>& clipped)
{
    if (clipped->IsPreserve() || !clipped->clipPath->IsRectangle(1e-6)) return;
    const Rect clip = clipped->clipPath->GetApproxBBox();
    auto& children = group.children;
    const auto place = std::find(children.begin(), children.end(), clipped);
    if (place == children.end()) return;
    auto first = place, last = place + 1;
    while (first != children.begin() && (*(first - 1))->IsContainedIn(clip, 1e-5))
        --first;
    while (last != children.end() && (*last)->IsContainedIn(clip, 1e-5))
        ++last;
    if (last - first == 1) return;
    Merge(*clipped, clipped->children.begin(), {first, place});
    Merge(*clipped, clipped->children.end(), {place + 1, last});
    clipped->UpdateBBox();
    group.Insert(children.erase(first, last), clipped);
}

void ExtendClippingGroups(GroupObject& group)
{
    std::vector<Kernel::Counted<GroupObject>> clipped;
    for (const auto& child : group.children)
        if (child->AsGroup() && child->clipPath) clipped.emplace_back(child->AsGroup());
    for (const auto& one : clipped)
        ExtendClippingGroup(group, one);
}

/// The longest run from `first` on of which no object overlaps any of the others.
Iterator FindFree(Iterator first, Iterator last, Iterator others, Iterator othersEnd)
{
    return std::find_if(first, last, [&](const auto& object) {
        return std::any_of(others, othersEnd,
                           [&](const auto& other) { return object->Overlaps(other->transformedBBox, 1e-5); });
    });
}

void ReorderText(GroupObject& group)
{
    const auto findEnd = [&group](Iterator first, bool isText) {
        return std::find_if(first, group.children.end(), [=](const auto& child) { return child->HasText() != isText; });
    };
    Iterator text = group.children.begin();
    Iterator between = findEnd(text, true);
    for (;;) {
        Iterator behind = findEnd(between, false);
        const Iterator end = findEnd(behind, true);
        if (behind == end) return;
        const Iterator free = between == behind ? behind : FindFree(behind, end, between, behind);
        between = std::rotate(between, behind, free);
        behind = free;
        if (behind == end) continue;
        const Iterator below = FindFree(between, behind, text, between);
        text = std::rotate(text, between, below);
        if (below != behind) text = behind;
        between = end;
    }
}

void FlattenSubGroups(GroupObject& group)
{
    const GroupObject::Children objects = std::exchange(group.children, {});
    for (const auto& object : objects) {
        GroupObject* inner = object->AsGroup();
        if (inner && inner->clipPath && inner->children.size() == 1 && !inner->children.front()->clipPath) {
            Object& only = *inner->children.front();
            const auto clip = inner->clipPath->Clone();
            clip->Transform(only.transform.GetInverse());
            only.SetClipPath(clip, inner->clipWinding);
            inner->ClearClipPath();
        }
        if (!inner || inner->IsPreserve() || inner->clipPath) {
            group.Add(object);
        } else {
            group.Insert(group.children.end(), inner->children.begin(), inner->children.end());
        }
    }
}

class SeededChoices : public Choices
{
public:
    explicit SeededChoices(unsigned seed) : generator(seed) {}
    unsigned Choose(unsigned count) override { return static_cast<unsigned>(generator() % count); }

private:
    std::mt19937 generator;
};

/// Some text, to passes that ask no more than whether and where it is.
struct TextLeaf : Object
{
    explicit TextLeaf(const Object& other) : Object(Kind::Bitmap)
    {
        id = other.id;
        bbox = other.bbox;
        transformedBBox = other.transformedBBox;
    }
    bool HasText() const override { return true; }
    void UpdateBBox() override {}
};

/// A random tree of which every third leaf is text.
Kernel::Counted<GroupObject> MakeTree(unsigned seed, Numbers numbers)
{
    SeededChoices choices(seed);
    const auto root = MakeRandomTree(choices, 5 + static_cast<int>(seed % 40), numbers);
    root->VisitSubGroups([](GroupObject* group) {
        for (Kernel::Counted<Object>& child : group->children) {
            if (child->AsGroup() || child->id % 3 != 0) continue;
            child = Kernel::MakeCounted<TextLeaf>(*child);
            child->SetParent(group);
        }
    });
    root->UpdateBBoxes();
    return root;
}

constexpr Rect c_page{0, 0, 70, 70};

TEST(ReducePlain, EachPassDoesWhatThePlainOneDoes)
{
    const auto onEach = [](auto visit) {
        return [visit](GroupObject& root) { root.VisitSubGroups([&](GroupObject* group) { visit(*group); }); };
    };
    const struct
    {
        const char* name;
        std::function<void(GroupObject&)> pass, plain;
    } pairs[] = {
        {"RemoveClippedObjects", Reduction::RemoveClippedObjects, onEach(RemoveClippedObjects)},
        {"RemoveRedundantClipping", [](GroupObject& root) { Reduction::RemoveRedundantClipping(root, c_page); },
         onEach([](GroupObject& group) { RemoveRedundantClipping(group, c_page); })},
        {"ExtendClippingGroups", onEach([](GroupObject& group) { group.ExtendClippingGroups(); }),
         onEach(ExtendClippingGroups)},
        {"ReorderText", Reduction::ReorderText, onEach(ReorderText)},
        {"FlattenSubGroups", Reduction::FlattenSubGroups, onEach(FlattenSubGroups)},
    };
    for (const auto& pair : pairs) {
        int changed = 0;
        for (unsigned seed = 0; seed < 2000; ++seed) {
            const auto tree = MakeTree(seed, Numbers::Plain);
            const auto twin = MakeTree(seed, Numbers::Plain);
            const std::string before = DescribeTree(*tree);
            pair.pass(*tree);
            pair.plain(*twin);
            const std::string result = DescribeTree(*tree);
            ASSERT_EQ(result, DescribeTree(*twin)) << pair.name << " of\n" << before;
            if (result != before) ++changed;
        }
        EXPECT_GT(changed, 150) << pair.name << " has little to do on these trees";
    }
}

TEST(ReducePlain, WildNumbersPassThrough)
{
    for (unsigned seed = 0; seed < 500; ++seed) {
        const auto tree = MakeTree(seed, Numbers::Wild);
        for (const Reduction::Pass& pass : Reduction::GetPasses())
            pass.run(*tree, c_page);
        EXPECT_EQ(DescribeTree(*tree).find("not the parent"), std::string::npos);
    }
}

} // namespace
} // namespace Quillet::Test
