#include "MakeObjects.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include "objects/reduction/Reduce.h"

#include <Quillet/LayerObject.h>

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

namespace Quillet::Test {
namespace {

using Geometry::WindingOrderMode;
using Children = GroupObject::Children;

constexpr Rect c_page{0, 0, 100, 100};

Kernel::Counted<GroupObject> MakeClip(const Rect& clip, const Children& children = {})
{
    auto group = MakeGroup(children);
    group->SetClipPath(MakeRectangle(clip), WindingOrderMode::NonZero);
    return group;
}

Kernel::Counted<GroupObject> MakeRoot(const Children& children)
{
    auto root = MakeGroup(children);
    root->UpdateBBoxes();
    return root;
}

Kernel::Counted<PathObject> MakeStroke(const Rect& rect)
{
    auto path = Kernel::MakeCounted<PathObject>(nullptr, rect, nullptr);
    path->penDescriptor = MakePaint();
    path->lineStyleDescriptor = MakeLine(2);
    path->UpdateBBox();
    return path;
}

Kernel::Counted<LayerObject> MakeLayer(const char* name, const Children& children = {})
{
    auto layer = Kernel::MakeCounted<LayerObject>(nullptr);
    layer->SetName(name);
    layer->Insert(layer->children.end(), children.begin(), children.end());
    return layer;
}

/// The whole reduction, and what a group says of its children in short: a group in parentheses, with "c" for a clip.
std::string Sketch(const GroupObject& group)
{
    std::string text;
    for (const auto& child : group.children) {
        const GroupObject* inner = child->AsGroup();
        if (child->clipPath) text += 'c';
        text += !inner ? "o" : (inner->IsLayer() ? "L(" : "(") + Sketch(*inner) + ")";
    }
    return text;
}

/// Whether a group gives its clip, which is `clip` and 5 to the right, to the first of its objects.
bool ConvertClip(const Rect& clip, const Kernel::Counted<PathObject>& object, const Children& others = {})
{
    object->SetTransform(Params::Translation(5, 0));
    const Rect moved{clip.left + 5, clip.top, clip.right + 5, clip.bottom};
    const auto group = MakeClip(moved, {object});
    group->Insert(group->children.end(), others.begin(), others.end());
    group->ConvertClippedRectangles();
    const Rect shape = group->clipPath ? Rect{5, 0, 55, 50} : moved;
    EXPECT_TRUE(object->IsStroked() || IsNear(object->transformedBBox, shape, 1e-9));
    return !group->clipPath;
}

TEST(ReduceClips, ARectangleTakesTheShapeOfAClipWithinIt)
{
    const Rect rect{0, 0, 50, 50};
    EXPECT_TRUE(ConvertClip({10, 20, 30, 40}, MakeBox(rect)));
    EXPECT_TRUE(ConvertClip({-0.0004, 0, 50, 50.0004}, MakeBox(rect)));
    EXPECT_FALSE(ConvertClip({-0.001, 0, 50, 50}, MakeBox(rect)));
    EXPECT_FALSE(ConvertClip({10, 20, 30, 40}, MakeStroke(rect)));
    EXPECT_FALSE(ConvertClip({10, 20, 30, 40}, MakeBox(rect), {MakeBox()}));
}

TEST(ReduceClips, TheWindingOfAClipGoesWithIt)
{
    const auto box = MakeBox({0, 0, 50, 50});
    const auto shown = MakeClip({10, 20, 30, 40}, {box});
    shown->clipWinding = WindingOrderMode::EvenOdd;
    shown->ConvertClippedRectangles();
    EXPECT_EQ(box->winding, WindingOrderMode::EvenOdd);

    const auto cut = MakeClip({10, 20, 30, 40}, {MakeBox({0, 0, 50, 50})});
    cut->clipWinding = WindingOrderMode::EvenOdd;
    const auto root = MakeRoot({cut});
    Reduction::FlattenSubGroups(*root);
    EXPECT_EQ(root->children.front()->clipWinding, WindingOrderMode::EvenOdd);
}

TEST(ReduceClips, ThoseThatCutNothingGo)
{
    const auto arch = MakeBox({});
    arch->SetPath(MakeArch(), WindingOrderMode::NonZero, true);
    const auto isIdle = [](const Rect& clip, const Kernel::Counted<Object>& object) {
        const auto root = MakeRoot({MakeClip(clip, {object})});
        Reduction::RemoveRedundantClipping(*root, c_page);
        return !root->children[0]->clipPath;
    };
    const auto large = MakeBox({-50, -50, 200, 200});
    EXPECT_TRUE(isIdle({0.06, -0.06, 100, 100}, large)) << "the page";
    EXPECT_FALSE(isIdle({0.07, 0, 100, 100}, large)) << "nearly the page";
    EXPECT_TRUE(isIdle({10, 10, 20, 20}, MakeBox({9.94, 10, 20, 20.0625})));
    EXPECT_FALSE(isIdle({10, 10, 20, 20}, MakeBox({9.9, 10, 20, 20})));
    EXPECT_FALSE(isIdle({10, 10, 20, 20}, MakeStroke({10, 10, 20, 20})));
    EXPECT_TRUE(isIdle({0, 0, 30, 15}, arch)) << "its control points are beyond";
    EXPECT_FALSE(isIdle({0, 0, 30, 14.9}, arch));
    EXPECT_TRUE(isIdle({10, 10, 20, 20}, MakeGroup()));
}

TEST(ReduceGroups, LayersOfOneNameSideBySideAreOne)
{
    const auto box = [] { return MakeBox({0, 0, 10, 10}); };
    const auto clipped = MakeLayer("a", {box()});
    clipped->SetClipPath(MakeRectangle(c_page), WindingOrderMode::NonZero);
    const auto root =
        MakeRoot({MakeLayer("a", {box()}), MakeLayer("a", {box(), box()}), MakeLayer("a"), box(),
                  MakeLayer("a", {box()}), MakeLayer("b", {box()}), clipped, MakeLayer(""), MakeLayer("")});
    root->CombineAdjacentLayers();
    EXPECT_EQ(Sketch(*root), "L(ooo)oL(o)L(o)cL(o)L()L()");
}

TEST(ReduceGroups, FillAndStrokeOfAShapeAreOneObject)
{
    const auto fill = [] { return MakeBox({0, 0, 10, 10}); };
    const auto stroke = [] { return MakeStroke({0, 0, 10, 10}); };
    const auto root = MakeRoot({fill(), stroke(), stroke(), fill(), fill(), MakeGroup(), fill(), stroke()});
    const auto dropped = root->children[1];
    root->CombineFillStroke();
    EXPECT_EQ(Sketch(*root), "ooo()o");
    EXPECT_EQ(dropped->parent, nullptr);
}

TEST(ReduceGroups, StayWithin5000Children)
{
    const auto split = [](int count) {
        const auto root = MakeGroup();
        for (int i = 0; i < count; ++i)
            root->Add(MakeBox());
        const Children before = root->children;
        root->AvoidTooManyChildren();
        std::vector<std::size_t> sizes;
        Children after;
        for (const auto& child : root->children) {
            const GroupObject* group = child->AsGroup();
            const Children& part = group ? group->children : Children{child};
            if (group) sizes.push_back(part.size());
            after.insert(after.end(), part.begin(), part.end());
        }
        EXPECT_EQ(after, before);
        return sizes;
    };
    using Sizes = std::vector<std::size_t>;
    EXPECT_EQ(split(5000), Sizes());
    EXPECT_EQ(split(5001), (Sizes{2500, 2501}));
    EXPECT_EQ(split(12000), (Sizes{4000, 4000, 4000}));
}

TEST(ReduceTrim, WhatIsPaintedLastOutsideBecomesALayer)
{
    TestDocument document(MakePagePdf("", {.entries = "/MediaBox [0 0 100 100] /TrimBox [0 0 80 60] /Rotate 90"}));
    const auto mark = [] { return MakeBox({70, 10, 75, 20}); };
    const auto inside = MakeBox({50, 70, 55, 75});
    const auto rule = MakeStroke({10, 30, 20, 30});
    const auto form = MakeRoot({mark(), mark()});
    form->SetIsXObject(true);
    const std::tuple<const char*, Children, const char*> rows[] = {
        {"marks", {mark(), inside, mark(), mark()}, "ooL(oo)"},
        {"a level rule inside", {inside, mark(), rule, mark()}, "oooL(o)"},
        {"a form", {form, mark()}, "(oo)L(o)"},
        {"none", {mark(), inside}, "oo"},
    };
    for (const auto& [name, children, sketch] : rows) {
        const auto root = document.Build();
        root->children.clear();
        root->Insert(root->children.end(), children.begin(), children.end());
        root->IsolateTrim();
        EXPECT_EQ(Sketch(*root), sketch) << name;
        if (root->children.back()->GetKind() != Object::Kind::Layer) continue;
        EXPECT_EQ(root->children.back()->AsGroup()->name, "Trim");
        EXPECT_EQ(root->children.back()->bbox, (Rect{70, 10, 75, 20}));
    }
}

TEST(Reduce, LeavesALeanTree)
{
    const auto reduce = [](const char* content) {
        const std::string form =
            PdfBuilder::MakeStream("0 0 5 5 re f 3 3 5 5 re f", "/Type /XObject /Subtype /Form /BBox [0 0 10 10]");
        TestDocument document(MakePagePdf(content, {.resources = "/XObject << /F 5 0 R >>", .objects = {form}}));
        const auto root = document.Build();
        root->Reduce(c_page);
        return Sketch(*root);
    };
    EXPECT_EQ(reduce("q 0 0 100 100 re W n 10 10 5 5 re f 20 20 5 5 re f Q"), "oo");
    EXPECT_EQ(reduce("q 10 10 20 20 re W n 10 10 20 20 re f Q q 10 10 20 20 re W n 10 10 20 20 re S Q"), "c(o)");
    EXPECT_EQ(reduce("q 5 5 40 40 re W n 10 10 20 20 re f Q q 5 5 40 40 re W n 10 10 20 20 re S Q"), "o");
    EXPECT_EQ(reduce("q 5 5 20 20 re W n 10 10 2 2 m 40 40 l S 1 1 30 30 re f Q q 50 50 5 5 re W n 0 0 9 9 re f Q"),
              "c(oo)");
    EXPECT_EQ(reduce("/F Do /F Do"), "(oo)(oo)");
}

/// Depth costs nothing: neither the stack nor, for each group, all that is above or below it.
TEST(Reduce, TakesNestsOfAnyDepth)
{
    for (const bool isCut : {false, true}) {
        const auto root = MakeGroup();
        auto innermost = root;
        for (int i = 0; i < 100'000; ++i) {
            const auto group = MakeClip(isCut ? Rect{0, 0, 50, 90.0 - i % 7} : Rect{0, 0, 50, 95});
            group->Add(MakeBox({0, 0, 40, isCut ? 95.0 : 90.0}));
            innermost->Add(group);
            innermost = group;
        }
        root->Reduce(c_page);
        EXPECT_EQ(root->bbox, (Rect{0, 0, 40, 90}));
        EXPECT_EQ(root->children.size(), isCut ? 1U : 20U);
    }
}

} // namespace
} // namespace Quillet::Test
