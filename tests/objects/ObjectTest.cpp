#include "MakeObjects.h"

#include <Quillet/BitmapObject.h>

#include "content/GraphicsState.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"
#include "content/TextHandler.h"
#include "objects/PaintedObjects.h"

#include <Raster/DynamicBitmap.h>

#include <gtest/gtest.h>

#include <utility>

namespace Quillet::Test {
namespace {

using Geometry::WindingOrderMode;

TEST(Object, ComparesItsBoxWithARectangle)
{
    using Answers = std::pair<bool, bool>;
    const auto compare = [](const Rect& box, const Rect& rect, double tolerance) {
        const auto object = MakeBox(box);
        return Answers(object->IsContainedIn(rect, tolerance), object->Overlaps(rect, tolerance));
    };
    const Rect rect{0, 0, 10, 10};
    EXPECT_EQ(compare({8, 2, 12, 4}, rect, 2), Answers(true, true)) << "across an edge";
    EXPECT_EQ(compare({10, 2, 12, 4}, rect, 0), Answers(false, false)) << "touching";
    EXPECT_EQ(compare({10, 2, 12, 4}, rect, 1e-5), Answers(false, true)) << "touching";
    EXPECT_EQ(compare({2, 2, 2, 4}, rect, 0), Answers(true, false)) << "a line inside";
    EXPECT_EQ(compare({2, 2, 4, 4}, {10, 10, 0, 0}, 0), Answers(false, true)) << "corners exchanged";
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
    const auto compare = [&](const Kernel::Counted<const Geometry::PolyCurveDbl>& otherClip,
                             WindingOrderMode winding = WindingOrderMode::NonZero, const Params& transform = {}) {
        const auto object = MakeBox();
        object->SetClipPath(clip, WindingOrderMode::NonZero);
        const auto other = MakeBox();
        other->SetClipPath(otherClip, winding);
        other->SetTransform(transform);
        return std::pair(object->HasSameClip(other), object->HasCompatibleAttributes(other));
    };
    EXPECT_EQ(compare(MakePath(clip->curves.front())), std::pair(true, true));
    EXPECT_EQ(compare(clip->Clone()), std::pair(false, true));
    EXPECT_EQ(compare(MakeRectangle({0, 0, 10, 11})), std::pair(false, false));
    EXPECT_EQ(compare(clip, WindingOrderMode::EvenOdd), std::pair(false, false));
    EXPECT_EQ(compare(clip, WindingOrderMode::NonZero, Params::Translation(0.001, 0)), std::pair(false, false));

    // Without clips, the rule is left over from nothing: one of the two comparisons looks at it all the same.
    const auto plain = MakeBox();
    const auto other = MakeBox();
    other->SetClipPath(nullptr, WindingOrderMode::EvenOdd);
    EXPECT_FALSE(plain->HasSameClip(other));
    EXPECT_TRUE(plain->HasCompatibleAttributes(other));
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
