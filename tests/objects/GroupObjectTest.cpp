#include "MakeObjects.h"

#include <Quillet/LayerObject.h>

#include <gtest/gtest.h>

#include <vector>

namespace Quillet::Test {
namespace {

using Geometry::WindingOrderMode;

struct BoxRow
{
    const char* name;
    std::vector<Rect> children;
    Rect box;
};

TEST(GroupObjectBox, JoinsTheBoxesOfChildrenWithAnArea)
{
    const BoxRow rows[] = {
        {"none", {}, {}},
        {"one", {{5, 5, 8, 9}}, {5, 5, 8, 9}},
        {"two", {{5, 5, 8, 9}, {-1, 6, 2, 7}}, {-1, 5, 8, 9}},
        {"a line adds nothing", {{5, 5, 8, 9}, {20, 0, 20, 50}}, {5, 5, 8, 9}},
        {"a line first", {{20, 0, 20, 50}, {5, 5, 8, 9}}, {5, 5, 8, 9}},
        {"only lines", {{20, 0, 20, 50}, {0, 3, 50, 3}}, {}},
    };
    for (const BoxRow& row : rows) {
        const auto group = MakeGroup();
        for (const Rect& rect : row.children)
            group->Add(MakeBox(rect));
        group->UpdateBBox();
        EXPECT_EQ(group->bbox, row.box) << row.name;
        EXPECT_EQ(group->transformedBBox, row.box) << row.name;
    }
}

TEST(GroupObjectBox, IsCutByTheClipInPageSpace)
{
    const Params toPage = Params::FromPdf(2, 0, 0, -2, 10, 100);
    const Geometry::PolyCurveDbl path(Rect{0, 0, 10, 10});
    const auto group = Kernel::MakeCounted<GroupObject>(nullptr, path, WindingOrderMode::EvenOdd, toPage);
    EXPECT_EQ(group->clipPath->GetApproxBBox(), (Rect{10, 80, 30, 100}));
    EXPECT_EQ(path.GetApproxBBox(), (Rect{0, 0, 10, 10}));
    EXPECT_EQ(group->clipWinding, WindingOrderMode::EvenOdd);
    EXPECT_TRUE(group->transform.IsIdentity(0));

    group->Add(MakeBox({0, 90, 20, 200}));
    group->UpdateBBox();
    EXPECT_EQ(group->bbox, (Rect{10, 90, 20, 100}));
    group->children.front()->SetBBox({200, 200, 300, 300});
    group->UpdateBBox();
    EXPECT_EQ(group->bbox, Rect{});
}

TEST(GroupObject, IsPreservedForWhatItSaysBeyondItsChildren)
{
    struct Row
    {
        const char* name;
        void (*set)(GroupObject&);
        bool isPreserve;
        bool isTransparencyGroup;
    };
    const auto addTwo = [](GroupObject& group) {
        group.SetIsXObject(true);
        group.Add(MakeBox({0, 0, 1, 1}));
        group.Add(MakeBox({0, 0, 1, 1}));
    };
    const auto addOne = [](GroupObject& group) {
        group.SetIsXObject(true);
        group.Add(MakeBox({0, 0, 1, 1}));
    };
    const Row rows[] = {
        {"plain", [](GroupObject&) {}, false, false},
        {"name", [](GroupObject& group) { group.SetName("Layer 1"); }, true, false},
        {"opacity", [](GroupObject& group) { group.SetOpacity(0.5); }, true, true},
        {"isolated", [](GroupObject& group) { group.SetIsIsolated(true); }, true, true},
        {"knockout", [](GroupObject& group) { group.SetIsKnockout(true); }, true, true},
        {"blend mode", [](GroupObject& group) { group.SetBlendMode(Renderer::FillBlendMode::Multiply); }, true, true},
        {"form of one", addOne, false, false},
        {"form of two", addTwo, true, false},
    };
    for (const Row& row : rows) {
        const auto group = MakeGroup();
        row.set(*group);
        EXPECT_EQ(group->IsPreserve(), row.isPreserve) << row.name;
        EXPECT_EQ(group->IsTransparencyGroup(), row.isTransparencyGroup) << row.name;
    }
    EXPECT_TRUE(Kernel::MakeCounted<LayerObject>(nullptr)->IsPreserve());
}

TEST(GroupObject, MovesChildrenWithTheirParentLinks)
{
    const auto source = MakeGroup();
    std::vector<Kernel::Counted<Object>> objects;
    for (int i = 0; i < 4; ++i) {
        objects.push_back(MakeBox({0, 0, 1, 1}));
        source->Add(objects.back());
    }
    const auto target = MakeGroup();
    target->Add(MakeBox({5, 5, 6, 6}));
    const Kernel::Counted<Object> own = target->children.front();
    target->AcquireContent(source, source->children.begin() + 1);
    EXPECT_EQ(source->children, GroupObject::Children{objects[0]});
    EXPECT_EQ(target->children, (GroupObject::Children{own, objects[1], objects[2], objects[3]}));

    const GroupObject::Children more{MakeBox({0, 0, 1, 1}), MakeBox({0, 0, 1, 1})};
    const auto first = target->Insert(target->children.begin() + 1, more.begin(), more.end());
    EXPECT_EQ(*first, more[0]);
    const auto single = MakeBox({0, 0, 1, 1});
    EXPECT_EQ(target->Insert(target->children.end(), single) - target->children.begin(), 6);
    EXPECT_EQ(target->children,
              (GroupObject::Children{own, more[0], more[1], objects[1], objects[2], objects[3], single}));
    for (const auto& child : target->children)
        EXPECT_EQ(child->parent.Get(), target.Get());
    EXPECT_EQ(objects[0]->parent.Get(), source.Get());
}

TEST(GroupObject, LeavesNoLinkToItselfBehind)
{
    const auto leaf = MakeBox({0, 0, 1, 1});
    const auto kept = MakeGroup();
    kept->Add(leaf);
    {
        const auto root = MakeGroup();
        const auto middle = MakeGroup();
        root->Add(middle);
        middle->Add(kept);
        EXPECT_EQ(leaf->GetRoot().Get(), root.Get());
        EXPECT_TRUE(root->IsAncestorOf(leaf));
        EXPECT_FALSE(leaf->GetRoot()->AsGroup()->IsAncestorOf(root));
        EXPECT_FALSE(kept->IsAncestorOf(middle));
    }
    EXPECT_EQ(kept->parent, nullptr);
    EXPECT_EQ(leaf->GetRoot().Get(), kept.Get());
    EXPECT_EQ(kept->children.size(), 1U);
    kept->Clear();
    EXPECT_EQ(leaf->parent, nullptr);
}

TEST(GroupObject, VisitsGroupsBelowBeforeThoseAbove)
{
    const auto make = [](const char* name) {
        const auto group = MakeGroup();
        group->SetName(name);
        return group;
    };
    const auto root = make("root");
    const auto left = make("left");
    root->Add(left);
    left->Add(make("left 1"));
    left->Add(MakeBox({0, 0, 1, 1}));
    left->Add(make("left 2"));
    root->children.push_back(nullptr);
    root->Add(make("right"));

    std::vector<std::string> names;
    root->VisitSubGroups([&names](GroupObject* group) {
        names.push_back(group->name);
        // A pass may do as it likes with what it is handed.
        group->children.clear();
    });
    EXPECT_EQ(names, (std::vector<std::string>{"left 1", "left 2", "left", "right", "root"}));
}

TEST(GroupObject, AsksObjectsBelowForTheirOutlines)
{
    const auto root = MakeGroup();
    const auto inner = MakeGroup();
    root->Add(MakeBox({0, 0, 10, 10}));
    root->Add(inner);
    EXPECT_TRUE(root->PreciseIsContainedIn({0, 0, 10, 10}, 0));
    inner->Add(MakeBox({20, 20, 30, 30}));
    EXPECT_FALSE(root->PreciseIsContainedIn({0, 0, 10, 10}, 0));
    EXPECT_TRUE(root->PreciseIsContainedIn({0, 0, 29, 29}, 1));
    EXPECT_TRUE(root->PreciseOverlaps({25, 25, 26, 26}, 0));
    EXPECT_FALSE(root->PreciseOverlaps({12, 12, 18, 18}, 0));
    EXPECT_FALSE(MakeGroup()->PreciseOverlaps({0, 0, 10, 10}, 0));
    EXPECT_FALSE(root->HasText());
}

TEST(GroupObject, NestsBeyondTheStack)
{
    // One "W n" after another nests without bound, in files that are legal.
    constexpr int c_depth = 200'000;
    auto root = MakeGroup();
    auto innermost = root;
    for (int i = 0; i < c_depth; ++i) {
        const auto group = MakeGroup();
        innermost->Add(group);
        innermost = group;
    }
    const Kernel::Counted<Object> mark = innermost;
    innermost->Add(MakeBox({1, 2, 3, 4}));
    root->UpdateBBoxes();
    EXPECT_EQ(root->bbox, (Rect{1, 2, 3, 4}));
    EXPECT_TRUE(root->PreciseIsContainedIn({0, 0, 5, 5}, 0));
    EXPECT_FALSE(root->HasText());
    EXPECT_EQ(innermost->GetPage(), nullptr);

    root->Add(MakeBox({0, 0, 1, 1}));
    const auto layer = Kernel::MakeCounted<LayerObject>(nullptr);
    EXPECT_EQ(layer->AcquireMarkedContent(mark), root);
    EXPECT_EQ(layer->children.size(), 2U);
}

TEST(GroupObject, NestsBeyondTheStackWithSomeGroupsHeldOutside)
{
    auto root = MakeGroup();
    Kernel::Counted<GroupObject> held;
    auto innermost = root;
    for (int i = 0; i < 200'000; ++i) {
        const auto group = MakeGroup();
        innermost->Add(group);
        innermost = group;
        if (i == 100'000) held = group;
    }
    innermost = nullptr;
    root->Clear();
    EXPECT_TRUE(root->children.empty());
    EXPECT_EQ(held->parent, nullptr);
    EXPECT_EQ(held->children.size(), 1U);
}

} // namespace
} // namespace Quillet::Test
