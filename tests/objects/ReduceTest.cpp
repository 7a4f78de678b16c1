#include "MakeObjects.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include "objects/reduction/Reduce.h"

#include <Quillet/LayerObject.h>

#include <gtest/gtest.h>

#include <numbers>
#include <string>
#include <vector>

namespace Quillet::Test {
namespace {

using Geometry::WindingOrderMode;
using Children = GroupObject::Children;

constexpr Rect c_page{0, 0, 100, 100};

Kernel::Counted<GroupObject> MakeClip(const Rect& clip, const Children& children = {})
{
    auto group = MakeGroup();
    group->SetClipPath(MakeRectangle(clip), WindingOrderMode::NonZero);
    group->Insert(group->children.end(), children.begin(), children.end());
    return group;
}

Kernel::Counted<GroupObject> MakeRoot(const Children& children)
{
    auto root = MakeGroup();
    root->Insert(root->children.end(), children.begin(), children.end());
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

TEST(ReduceClips, ARectangleTakesTheShapeOfAClipWithinIt)
{
    const struct
    {
        const char* name;
        Rect clip;
        bool isStroked, isAlone, isConverted;
    } rows[] = {
        {"within", {10, 20, 30, 40}, false, true, true},
        {"as large, by rounding larger", {-0.0004, 0, 50, 50.0004}, false, true, true},
        {"larger", {-0.001, 0, 50, 50}, false, true, false},
        {"stroked", {10, 20, 30, 40}, true, true, false},
        {"with another", {10, 20, 30, 40}, false, false, false},
    };
    for (const auto& row : rows) {
        const auto object = row.isStroked ? MakeStroke({0, 0, 50, 50}) : MakeBox({0, 0, 50, 50});
        object->SetTransform(Params::Translation(5, 0));
        const Rect moved{row.clip.left + 5, row.clip.top, row.clip.right + 5, row.clip.bottom};
        const auto group = MakeClip(moved, {object});
        if (!row.isAlone) group->Add(MakeBox({0, 0, 1, 1}));
        group->ConvertClippedRectangles();
        EXPECT_EQ(!group->clipPath, row.isConverted) << row.name;
        const Rect shape = row.isConverted ? moved : object->transformedBBox;
        EXPECT_TRUE(object->transformedBBox.Inflated(1e-9).Contains(shape)) << row.name;
        EXPECT_TRUE(shape.Inflated(1e-9).Contains(object->transformedBBox)) << row.name;
    }
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

TEST(ReduceClips, WhatStandsOutsideGoesButLayers)
{
    const auto root =
        MakeRoot({MakeClip({0, 0, 50, 50}, {MakeBox({49, 0, 60, 10}), MakeBox({50.0001, 0, 60, 10}), MakeLayer("far"),
                                            MakeClip({60, 60, 90, 90}, {MakeBox({60, 60, 90, 90})})}),
                  MakeBox({60, 60, 70, 70})});
    Reduction::RemoveClippedObjects(*root);
    EXPECT_EQ(Sketch(*root), "c(oL())o");
    EXPECT_EQ(root->children[0]->bbox, (Rect{49, 0, 50, 10}));
}

TEST(ReduceClips, ThoseThatCutNothingGo)
{
    const auto arch = MakeBox({});
    const auto curve = Kernel::MakeCounted<Geometry::PolyCurveDbl>();
    curve->AddCurve(Kernel::MakeCounted<Geometry::CurveDbl>());
    curve->curves.front()->AddNode({0, 0});
    curve->curves.front()->AddBezierCurve({30, 0}, {0, 20}, {30, 20});
    arch->SetPath(curve, WindingOrderMode::NonZero, true);
    const struct
    {
        const char* name;
        Rect clip;
        Kernel::Counted<Object> object;
        bool isGone;
    } rows[] = {
        {"the page", {0.06, -0.06, 100, 100}, MakeBox({-50, -50, 200, 200}), true},
        {"nearly the page", {0.07, 0, 100, 100}, MakeBox({-50, -50, 200, 200}), false},
        {"content within tolerance", {10, 10, 20, 20}, MakeBox({9.94, 10, 20, 20.0625}), true},
        {"content beyond tolerance", {10, 10, 20, 20}, MakeBox({9.9, 10, 20, 20}), false},
        {"a stroke over the edge", {10, 10, 20, 20}, MakeStroke({10, 10, 20, 20}), false},
        {"a curve within, its control points beyond", {0, 0, 30, 15}, arch, true},
        {"a curve beyond", {0, 0, 30, 14.9}, arch, false},
        {"nothing in groups", {10, 10, 20, 20}, MakeGroup(), true},
    };
    for (const auto& row : rows) {
        const auto root = MakeRoot({MakeClip(row.clip, {row.object})});
        Reduction::RemoveRedundantClipping(*root, c_page);
        EXPECT_EQ(!root->children[0]->clipPath, row.isGone) << row.name;
    }
}

TEST(ReduceClips, TakeInTheNeighboursThatStandInThem)
{
    const auto box = [](double x) { return MakeBox({x, 0, x + 5, 5}); };
    const auto clip = MakeClip({0, 0, 50, 50}, {box(10)});
    const auto twin = MakeClip({0, 0, 50, 50}, {box(20), box(25)});
    twin->clipPath = clip->clipPath;
    const auto root = MakeRoot({box(60), box(1), clip, twin, MakeClip({0, 0, 10, 10}, {box(3)}), box(48), box(2)});
    root->ExtendClippingGroups();
    EXPECT_EQ(Sketch(*root), "oc(oooo"
                             "c(o))oo")
        << "the twin vanishes, the other clip stays";
    EXPECT_EQ(clip->bbox, (Rect{1, 0, 30, 5}));

    const auto faded = MakeClip({0, 0, 50, 50}, {box(10)});
    faded->SetOpacity(0.5);
    const auto plain = MakeRoot({box(1), faded, box(2)});
    plain->ExtendClippingGroups();
    EXPECT_EQ(Sketch(*plain), "oc(o)o");
}

TEST(ReduceGroups, FlattenUnlessTheySaySomething)
{
    const auto form = [](const Children& children) {
        auto group = MakeRoot(children);
        group->SetIsXObject(true);
        return group;
    };
    const auto box = [] { return MakeBox({0, 0, 10, 10}); };
    const auto turned = MakeBox({0, 0, 10, 10});
    turned->SetTransform(Params::FromPdf(0, 1, -1, 0, 30, 0));
    const auto root = MakeRoot({form({box()}), form({box(), box()}), MakeRoot({box(), MakeRoot({box()})}),
                                MakeClip({20, 0, 25, 10}, {turned}), MakeClip({0, 0, 5, 5}, {box(), box()}),
                                MakeClip({0, 0, 5, 5}, {MakeClip({0, 0, 4, 4}, {box()})})});
    Reduction::FlattenSubGroups(*root);
    EXPECT_EQ(Sketch(*root), "o(oo)ooco"
                             "c(oo)c(co)");
    EXPECT_EQ(turned->transform.ApplyTo(turned->clipPath->GetApproxBBox()), (Rect{20, 0, 25, 10}));
    for (const auto& child : root->children)
        EXPECT_EQ(child->parent.Get(), root.Get());
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

TEST(ReduceGroups, EmptyOnesGoWithTheGroupsAboveThem)
{
    const auto root = MakeRoot({MakeRoot({MakeGroup(), MakeGroup()}), MakeLayer("a"), MakeBox({0, 0, 1, 1})});
    root->VisitSubGroups([](GroupObject* group) { group->RemoveEmptyGroups(); });
    EXPECT_EQ(Sketch(*root), "L()o");
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
    const struct
    {
        int count;
        std::vector<std::size_t> groups;
    } rows[] = {{5000, {}}, {5001, {2500, 2501}}, {12000, {4000, 4000, 4000}}};
    for (const auto& row : rows) {
        const auto root = MakeGroup();
        for (int i = 0; i < row.count; ++i)
            root->Add(MakeBox({0, 0, 1, 1}));
        const Children before = root->children;
        root->AvoidTooManyChildren();
        std::vector<std::size_t> sizes;
        Children after;
        for (const auto& child : root->children) {
            const GroupObject* group = child->AsGroup();
            if (!group) continue;
            sizes.push_back(group->children.size());
            after.insert(after.end(), group->children.begin(), group->children.end());
        }
        EXPECT_EQ(sizes, row.groups);
        EXPECT_EQ(row.groups.empty() ? root->children : after, before);
    }
}

TEST(ReduceTrim, WhatIsPaintedLastOutsideBecomesALayer)
{
    TestDocument document(MakePagePdf("", {.entries = "/MediaBox [0 0 100 100] /TrimBox [0 0 80 60] /Rotate 90"}));
    const auto mark = [] { return MakeBox({70, 10, 75, 20}); };
    const auto inside = MakeBox({50, 70, 55, 75});
    const auto rule = MakeStroke({10, 30, 20, 30});
    const auto form = MakeRoot({mark(), mark()});
    form->SetIsXObject(true);
    const struct
    {
        const char* name;
        Children children;
        const char* sketch;
    } rows[] = {
        {"marks", {mark(), inside, mark(), mark()}, "ooL(oo)"},
        {"a level rule inside", {inside, mark(), rule, mark()}, "oooL(o)"},
        {"a form", {form, mark()}, "(oo)L(o)"},
        {"none", {mark(), inside}, "oo"},
    };
    for (const auto& row : rows) {
        const auto root = document.Build();
        root->children.clear();
        root->Insert(root->children.end(), row.children.begin(), row.children.end());
        root->IsolateTrim();
        EXPECT_EQ(Sketch(*root), row.sketch) << row.name;
        if (root->children.back()->GetKind() != Object::Kind::Layer) continue;
        EXPECT_EQ(root->children.back()->AsGroup()->name, "Trim");
        EXPECT_EQ(root->children.back()->bbox, (Rect{70, 10, 75, 20}));
    }
}

TEST(Reduce, LeavesALeanTree)
{
    const struct
    {
        const char* content;
        const char* sketch;
    } rows[] = {
        {"q 0 0 100 100 re W n 10 10 5 5 re f 20 20 5 5 re f Q", "oo"},
        {"q 10 10 20 20 re W n 10 10 20 20 re f Q q 10 10 20 20 re W n 10 10 20 20 re S Q", "c(o)"},
        {"q 5 5 40 40 re W n 10 10 20 20 re f Q q 5 5 40 40 re W n 10 10 20 20 re S Q", "o"},
        {"q 5 5 20 20 re W n 10 10 2 2 m 40 40 l S 1 1 30 30 re f Q q 50 50 5 5 re W n 0 0 9 9 re f Q", "c(oo)"},
        {"/F Do /F Do", "(oo)(oo)"},
    };
    for (const auto& row : rows) {
        TestDocument document(MakePagePdf(
            row.content, {.resources = "/XObject << /F 5 0 R >>",
                          .objects = {PdfBuilder::MakeStream("0 0 5 5 re f 3 3 5 5 re f",
                                                             "/Type /XObject /Subtype /Form /BBox [0 0 10 10]")}}));
        const auto root = document.Build();
        ASSERT_TRUE(root);
        root->Reduce(c_page);
        EXPECT_EQ(Sketch(*root), row.sketch) << row.content;
    }
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
