#include "MakeObjects.h"

#include <Quillet/BitmapObject.h>

#include "content/GraphicsState.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"
#include "content/TextHandler.h"
#include "objects/PaintedObjects.h"

#include <Raster/DynamicBitmap.h>

#include <gtest/gtest.h>

namespace Quillet::Test {
namespace {

using Geometry::WindingOrderMode;

TEST(Object, ComparesItsBoxWithARectangle)
{
    const struct
    {
        const char* name;
        Rect box, rect;
        double tolerance;
        bool isContained, overlaps;
    } rows[] = {
        {"across an edge, within tolerance", {8, 2, 12, 4}, {0, 0, 10, 10}, 2, true, true},
        {"touching", {10, 2, 12, 4}, {0, 0, 10, 10}, 0, false, false},
        {"touching, with tolerance", {10, 2, 12, 4}, {0, 0, 10, 10}, 1e-5, false, true},
        {"a line inside", {2, 2, 2, 4}, {0, 0, 10, 10}, 0, true, false},
        {"in a rectangle with its corners exchanged", {2, 2, 4, 4}, {10, 10, 0, 0}, 0, false, true},
    };
    for (const auto& row : rows) {
        const auto object = MakeBox(row.box);
        EXPECT_EQ(object->IsContainedIn(row.rect, row.tolerance), row.isContained) << row.name;
        EXPECT_EQ(object->Overlaps(row.rect, row.tolerance), row.overlaps) << row.name;
    }
}

TEST(Object, CutsItsBoxByTheClipWhenEitherIsSet)
{
    const auto object = MakeBox({0, 0, 10, 10});
    object->SetTransform(Params::Translation(100, 0));
    object->SetClipPath(MakeRectangle({5, 5, 20, 20}), WindingOrderMode::EvenOdd);
    EXPECT_EQ(object->transformedBBox, (Rect{100, 0, 110, 10}));
    object->UpdateBBox();
    EXPECT_EQ(object->transformedBBox, (Rect{105, 5, 110, 10}));

    object->SetBBox({30, 30, 40, 40});
    EXPECT_EQ(object->bbox, Rect{});
}

TEST(Object, TellsSharedClipsFromEqualOnes)
{
    const auto clip = MakeRectangle({0, 0, 10, 10});
    const auto sharing = Kernel::MakeCounted<Geometry::PolyCurveDbl>();
    sharing->AddCurve(clip->curves.front());
    const struct
    {
        const char* name;
        Kernel::Counted<const Geometry::PolyCurveDbl> clip;
        WindingOrderMode winding;
        Params transform;
        bool hasSameClip, isCompatible;
    } rows[] = {
        {"same curves", sharing, WindingOrderMode::NonZero, {}, true, true},
        {"equal", clip->Clone(), WindingOrderMode::NonZero, {}, false, true},
        {"different", MakeRectangle({0, 0, 10, 11}), WindingOrderMode::NonZero, {}, false, false},
        {"other rule", clip, WindingOrderMode::EvenOdd, {}, false, false},
        {"other transform", clip, WindingOrderMode::NonZero, Params::Translation(0.001, 0), false, false},
    };
    for (const auto& row : rows) {
        const auto object = MakeBox({0, 0, 1, 1});
        object->SetClipPath(clip, WindingOrderMode::NonZero);
        const auto other = MakeBox({0, 0, 1, 1});
        other->SetClipPath(row.clip, row.winding);
        other->SetTransform(row.transform);
        EXPECT_EQ(object->HasSameClip(other), row.hasSameClip) << row.name;
        EXPECT_EQ(object->HasCompatibleAttributes(other), row.isCompatible) << row.name;
    }

    // Without clips, the rule is left over from nothing: one of the two comparisons looks at it all the same.
    const auto plain = MakeBox({0, 0, 1, 1});
    const auto other = MakeBox({0, 0, 1, 1});
    other->SetClipPath(nullptr, WindingOrderMode::EvenOdd);
    EXPECT_FALSE(plain->HasSameClip(other));
    EXPECT_TRUE(plain->HasCompatibleAttributes(other));
}

TEST(Object, FindsPageAndSettingsThroughItsParents)
{
    TestDocument document(MakePagePdf("q 10 10 20 20 re W n 12 12 5 5 re f Q 1 1 5 5 re f"));
    document->SetTextFidelity(TextFidelityEditable);
    const Kernel::Counted<GroupObject> root = document.Build();
    ASSERT_EQ(root->children.size(), 2U);
    ASSERT_TRUE(root->children[0]->AsGroup());
    const Kernel::Counted<Object> clipped = root->children[0]->AsGroup()->children.at(0);
    EXPECT_EQ(clipped->GetPage().Get(), document->GetPage(0).Get());
    EXPECT_EQ(clipped->GetTextFidelity(), TextFidelityEditable);

    root->UpdateBBoxes();
    EXPECT_EQ(clipped->transformedBBox, (Rect{12, 83, 17, 88}));
    root->Clear();
    EXPECT_EQ(clipped->GetPage(), nullptr);
}

TEST(BitmapObject, StandsOnTheUnitSquareWithItsFirstRowAtTheTop)
{
    TextHandler textHandler(nullptr);
    GraphicsState state(nullptr, textHandler);
    state.SetLtCurrent(Params::FromPdf(200, 0, 0, -100, 10, 500));
    const auto made =
        MakeBitmapObject(nullptr, state, Kernel::MakeCounted<Raster::DynamicBitmap>(40, 50), BitmapContext::Page);
    BitmapObject& object = *made;
    EXPECT_EQ(object.bbox, (Rect{0, 0, 40, 50}));
    EXPECT_TRUE(object.transform.IsEqual(Params::FromPdf(5, 0, 0, 2, 10, 400), 1e-12));
    EXPECT_EQ(object.transformedBBox, (Rect{10, 400, 210, 500}));

    const auto flat =
        MakeBitmapObject(nullptr, state, Kernel::MakeCounted<Raster::DynamicBitmap>(40, 0), BitmapContext::Page);
    EXPECT_EQ(flat->transform, state.ltCurrent);
}

} // namespace
} // namespace Quillet::Test
