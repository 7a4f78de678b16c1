#include "MakeObjects.h"

#include <Quillet/LayerObject.h>

#include <gtest/gtest.h>

#include <vector>

namespace Quillet::Test {
namespace {

TEST(GroupObjectBox, JoinsTheBoxesOfChildrenWithAnArea)
{
    const auto group = MakeGroup({MakeBox({20, 0, 20, 50})});
    group->UpdateBBox();
    EXPECT_EQ(group->bbox, Rect{});
    group->Add(MakeBox({5, 5, 8, 9}));
    group->Add(MakeBox({-1, 6, 2, 7}));
    group->UpdateBBox();
    EXPECT_EQ(group->bbox, (Rect{-1, 5, 8, 9}));
}

TEST(GroupObject, IsPreservedForWhatItSaysBeyondItsChildren)
{
    const struct
    {
        const char* name;
        void (*set)(GroupObject&);
        bool isPreserve, isTransparencyGroup;
    } rows[] = {
        {"plain", [](GroupObject&) {}, false, false},
        {"name", [](GroupObject& group) { group.SetName("Layer 1"); }, true, false},
        {"opacity", [](GroupObject& group) { group.SetOpacity(0.5); }, true, true},
        {"isolated", [](GroupObject& group) { group.SetIsIsolated(true); }, true, true},
        {"knockout", [](GroupObject& group) { group.SetIsKnockout(true); }, true, true},
        {"blend mode", [](GroupObject& group) { group.SetBlendMode(Renderer::FillBlendMode::Multiply); }, true, true},
    };
    for (const auto& row : rows) {
        const auto group = MakeGroup();
        row.set(*group);
        EXPECT_EQ(group->IsPreserve(), row.isPreserve) << row.name;
        EXPECT_EQ(group->IsTransparencyGroup(), row.isTransparencyGroup) << row.name;
    }
    EXPECT_TRUE(Kernel::MakeCounted<LayerObject>(nullptr)->IsPreserve());
    const auto form = MakeGroup();
    form->SetIsXObject(true);
    form->Add(MakeBox());
    EXPECT_FALSE(form->IsPreserve());
    form->Add(MakeBox());
    EXPECT_TRUE(form->IsPreserve());
}

TEST(GroupObject, MovesChildrenWithTheirParentLinks)
{
    const auto source = MakeGroup();
    const auto target = MakeGroup();
    GroupObject::Children objects;
    for (int i = 0; i < 6; ++i)
        objects.push_back(MakeBox());
    source->Insert(source->children.end(), objects.begin(), objects.begin() + 3);
    target->Add(objects[3]);
    target->AcquireContent(source, source->children.begin() + 1);
    EXPECT_EQ(source->children, GroupObject::Children{objects[0]});
    EXPECT_EQ(*target->Insert(target->children.begin() + 1, objects.begin() + 4, objects.end()), objects[4]);
    EXPECT_EQ(target->children, (GroupObject::Children{objects[3], objects[4], objects[5], objects[1], objects[2]}));
    for (const auto& child : target->children)
        EXPECT_EQ(child->parent.Get(), target.Get());
}

TEST(GroupObject, LeavesNoLinkToItselfBehind)
{
    const auto leaf = MakeBox();
    const auto kept = MakeGroup({leaf});
    EXPECT_TRUE(MakeGroup({kept})->IsAncestorOf(leaf));
    EXPECT_EQ(kept->parent, nullptr);
    kept->Clear();
    EXPECT_EQ(leaf->parent, nullptr);
}

TEST(LayerObject, TakesAClipThatWasFilledSinceTheMarkOnlyIfItIsFirst)
{
    for (const bool isFirst : {true, false}) {
        const auto filled = MakeGroup({MakeBox()});
        const auto outer = isFirst ? MakeGroup({filled}) : MakeGroup({MakeBox(), filled});
        const auto root = MakeGroup({outer, MakeBox()});
        const GroupObject::Children before = root->children;
        const auto layer = Kernel::MakeCounted<LayerObject>(nullptr);
        EXPECT_EQ(layer->AcquireMarkedContent(filled), isFirst ? root : nullptr);
        EXPECT_EQ(isFirst ? layer->children : root->children, before);
    }
    const auto layer = Kernel::MakeCounted<LayerObject>(nullptr);
    EXPECT_EQ(layer->AcquireMarkedContent(MakeBox()), nullptr) << "an object outside any tree";
    EXPECT_EQ(layer->AcquireMarkedContent(nullptr), nullptr);
}

TEST(GroupObject, NestsBeyondTheStack)
{
    // One "W n" after another nests without bound, in files that are legal.
    constexpr int c_depth = 200'000;
    const auto root = MakeGroup();
    Kernel::Counted<GroupObject> heldOutside;
    auto innermost = root;
    for (int i = 0; i < c_depth; ++i) {
        const auto group = MakeGroup();
        innermost->Add(group);
        innermost = group;
        if (i == c_depth / 2) heldOutside = group;
    }
    Kernel::Counted<Object> mark = innermost;
    innermost->Add(MakeBox({1, 2, 3, 4}));
    root->UpdateBBoxes();
    EXPECT_EQ(root->bbox, (Rect{1, 2, 3, 4}));
    EXPECT_TRUE(root->PreciseIsContainedIn({0, 0, 5, 5}, 0));
    EXPECT_FALSE(root->HasText());
    EXPECT_EQ(innermost->GetPage(), nullptr);

    root->Add(MakeBox());
    const auto layer = Kernel::MakeCounted<LayerObject>(nullptr);
    EXPECT_EQ(layer->AcquireMarkedContent(mark), root);
    EXPECT_EQ(layer->children.size(), 2U);

    mark = innermost = nullptr;
    layer->Clear();
    EXPECT_EQ(heldOutside->parent, nullptr);
    EXPECT_EQ(heldOutside->children.size(), 1U);
}

} // namespace
} // namespace Quillet::Test
