#include "MakeObjects.h"

#include "content/GraphicsState.h"
#include "content/TextHandler.h"
#include "objects/PaintedObjects.h"

#include <gtest/gtest.h>

#include <string>

namespace Quillet::Test {
namespace {

using Geometry::WindingOrderMode;
using Renderer::FillDescriptor;

/// Stands for the fills that have no alpha of their own: one that is asked for it turns solid.
class BitmapFill : public Renderer::Fill
{
public:
    Kind GetKind() const override { return Kind::Bitmap; }
    bool IsOpaque() const override { return true; }
    Kernel::Consolidated<Renderer::Fill> MakeWithAlpha(double alpha) const override
    {
        return MakePaint(static_cast<float>(alpha))->fill;
    }
    std::size_t GetHash() const override { return 1; }
    bool IsEqual(const Kernel::Consolidatable&) const override { return true; }
};

Kernel::Counted<FillDescriptor> MakeBitmapPaint(const Params& transform = {})
{
    const Kernel::Consolidated<Renderer::Fill> fill = Kernel::ConsolidateObjectPostAlloc(BitmapFill());
    return Kernel::MakeCounted<FillDescriptor>(fill, true, transform, Renderer::FillBlendMode::Normal, false);
}

/// 1 for a fill that was not touched, -1 for no paint.
double GetAlpha(const Kernel::Counted<FillDescriptor>& paint)
{
    if (!paint) return -1;
    return paint->fill->GetKind() == Renderer::Fill::Kind::Solid ? paint->fill->GetColour()->GetAlpha() : 1;
}

class StatePath : public testing::Test
{
protected:
    TextHandler textHandler{nullptr};
    GraphicsState state{nullptr, textHandler};

    void SetUp() override { state.fillDescriptor = state.strokeDescriptor = MakePaint(); }
};

TEST_F(StatePath, SplitsAlphasBetweenObjectAndPaints)
{
    const struct
    {
        Fill::Type type;
        double fill, stroke;
        bool isBitmapFill, isBitmapStroke;
        double expectedObject, expectedFill, expectedStroke;
    } rows[] = {
        {Fill::Fill, 0.5, 0.25, false, false, 1, 0.5, -1},
        {Fill::FillAndStroke, 0.25, 0.5, false, false, 0.5, 0.5, 1},
        {Fill::FillAndStroke, 0.5, 0.25, false, false, 1, 0.5, 0.25},
        {Fill::FillAndStroke, 0, 0, false, false, 0, 0, 1},
        {Fill::FillAndStroke, 0.5, 0.49995, false, false, 0.49995, 1, 1},
        {Fill::Fill, 0.5, 0.25, true, true, 0.5, 1, -1},
        {Fill::FillAndStroke, 0.5, 0.25, true, false, 0.5, 1, 0.25},
        {Fill::FillAndStroke, 0.5, 0.25, false, true, 0.25, 0.5, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        state.fillAlpha = row.fill;
        state.strokeAlpha = row.stroke;
        state.fillDescriptor = row.isBitmapFill ? MakeBitmapPaint() : MakePaint();
        state.strokeDescriptor = row.isBitmapStroke ? MakeBitmapPaint() : MakePaint();
        const auto object =
            MakePathObject(nullptr, state, MakeRectangle({0, 0, 10, 10}), row.type, WindingOrderMode::NonZero);
        EXPECT_EQ(object->opacity, row.expectedObject);
        EXPECT_NEAR(GetAlpha(object->brushDescriptor), row.expectedFill, 1e-3);
        EXPECT_NEAR(GetAlpha(object->penDescriptor), row.expectedStroke, 1e-3);
    }
}

TEST_F(StatePath, TurnsWithItsPaintsAndStaysOnThePage)
{
    state.SetLtCurrent(Params::FromPdf(2, 0, 0, -2, 100, 700));
    const Params placement = Params::FromPdf(10, 0, 0, 20, 5, 5);
    state.fillDescriptor = MakeBitmapPaint(placement);
    const auto made =
        MakePathObject(nullptr, state, MakeRectangle({0, 0, 10, 30}), Fill::Fill, WindingOrderMode::EvenOdd);
    const PathObject& object = *made;

    EXPECT_TRUE(object.transform.IsEqual(Params::FromPdf(2, 0, 0, 2, 100, 640), 1e-9));
    EXPECT_EQ(object.transformedBBox, (Rect{100, 640, 120, 700}));
    // The paint lies on the page where it lay in user space.
    const Params toPage = object.transform * object.brushDescriptor->transform;
    EXPECT_TRUE(toPage.IsEqual(state.ltCurrent * placement, 1e-9));
}

TEST(PathObject, GoesByItsOutlineWherePrecisionIsAskedFor)
{
    PathObject object(nullptr, Rect{}, MakePaint());
    object.path = MakeArch();
    object.UpdateBBox();
    EXPECT_FALSE(object.IsContainedIn({0, 0, 30, 15}, 0));
    EXPECT_TRUE(object.PreciseIsContainedIn({0, 0, 30, 15}, 1e-9));
    EXPECT_TRUE(object.Overlaps({0, 16, 30, 30}, 0));
    EXPECT_FALSE(object.PreciseOverlaps({0, 16, 30, 30}, 0));

    object.lineStyleDescriptor = MakeLine(4);
    object.UpdateBBox();
    EXPECT_EQ(object.bbox, (Rect{0, 0, 30, 20})) << "no pen yet";
    object.penDescriptor = MakePaint();
    object.UpdateBBox();
    EXPECT_EQ(object.bbox, (Rect{-2, -2, 32, 22}));
    EXPECT_TRUE(object.PreciseIsContainedIn({-2, -2, 32, 17}, 1e-9));
    EXPECT_TRUE(object.PreciseOverlaps({0, 16, 30, 30}, 0));
    EXPECT_FALSE(object.PreciseOverlaps({0, 18, 30, 30}, 0));
}

TEST(PathObject, OverlapsByTheStrokeOfALevelLine)
{
    const auto curve = Kernel::MakeCounted<Geometry::CurveDbl>();
    curve->AddLine({0, 5}, {30, 5});
    PathObject object(nullptr, Rect{}, nullptr);
    object.path = MakePath(curve);
    EXPECT_FALSE(object.PreciseOverlaps({0, 0, 10, 10}, 0));
    object.penDescriptor = MakePaint();
    object.lineStyleDescriptor = MakeLine(2);
    EXPECT_TRUE(object.PreciseOverlaps({0, 0, 10, 4.5}, 0));
    EXPECT_FALSE(object.PreciseOverlaps({0, 0, 10, 4}, 0));
}

/// A fill ("f"), a stroke ("s") or both ("fs").
Kernel::Counted<PathObject> Make(const std::string& paints, const Rect& rect = {0, 0, 10, 10},
                                 const Params& transform = {}, bool isBlended = false)
{
    const bool isStroked = paints.back() == 's';
    const auto object = Kernel::MakeCounted<PathObject>(nullptr, rect, paints[0] == 'f' ? MakePaint() : nullptr);
    object->SetTransform(transform);
    if (isBlended) object->blendMode = Renderer::FillBlendMode::Multiply;
    if (isStroked) object->penDescriptor = MakePaint(0.5F);
    if (isStroked) object->lineStyleDescriptor = MakeLine(3);
    return object;
}

bool Combine(const Kernel::Counted<PathObject>& first, const Kernel::Counted<PathObject>& second)
{
    const bool isStrokeFirst = first->IsStroked();
    first->opacity = 0.75;
    const bool isCombined = first->TryCombineFillStroke(second);
    EXPECT_EQ(first->IsFilled() && first->IsStroked(), isCombined);
    EXPECT_EQ(first->opacity, 0.75);
    const bool isBehind = first->lineStyleDescriptor && first->lineStyleDescriptor->isBehindFill;
    EXPECT_EQ(isBehind, isCombined && isStrokeFirst);
    return isCombined;
}

TEST(PathObjectCombining, TakesAFillAndAStrokeOfOneShape)
{
    const Rect rect{0, 0, 10, 10};
    const Params shift = Params::Translation(-5, 0);
    EXPECT_TRUE(Combine(Make("f"), Make("s")));
    EXPECT_TRUE(Combine(Make("s"), Make("f")));
    EXPECT_TRUE(Combine(Make("f"), Make("s", {5, 0, 15, 10}, shift))) << "one shape in two spaces";
    EXPECT_FALSE(Combine(Make("f"), Make("s", rect, shift))) << "one path in two places";
    EXPECT_TRUE(Combine(Make("f"), Make("s", {0, 0, 10, 10.0009})));
    EXPECT_FALSE(Combine(Make("f"), Make("s", {0, 0, 10, 10.0011})));
    EXPECT_FALSE(Combine(Make("f"), Make("fs")));
    EXPECT_FALSE(Combine(Make("f", rect, {}, true), Make("s")));
    EXPECT_FALSE(Combine(Make("f"), Make("s", rect, {}, true)));
}

TEST(PathObjectCombining, GoesByWhatTheLaterObjectDraws)
{
    const auto fill = Make("f");
    const auto stroke = Make("s");
    stroke->path->curves.front()->SetClosed(false);
    EXPECT_TRUE(fill->TryCombineFillStroke(stroke));
    EXPECT_FALSE(fill->IsClosed());

    const auto under = Make("s");
    const auto sharedStyle = under->lineStyleDescriptor;
    const auto over = Make("f");
    over->winding = WindingOrderMode::EvenOdd;
    over->path->curves.front()->SetClosed(false);
    EXPECT_TRUE(under->TryCombineFillStroke(over));
    EXPECT_EQ(under->winding, WindingOrderMode::EvenOdd);
    EXPECT_TRUE(under->IsClosed());
    EXPECT_FALSE(sharedStyle->isBehindFill);
}

TEST(PathObjectCombining, ComparesCurvesAndClips)
{
    const auto single = Make("f");
    const auto pair = Make("s");
    pair->path->AddRectangle({20, 20, 30, 30});
    EXPECT_FALSE(single->TryCombineFillStroke(pair));
    const auto clip = Kernel::MakeCounted<Geometry::PolyCurveDbl>(Rect{0, 0, 5, 10});
    for (const auto& [isFirst, isSecond] : {std::pair{true, false}, {false, true}, {true, true}}) {
        const auto fill = Make("f");
        const auto stroke = Make("s");
        if (isFirst) fill->SetClipPath(clip, WindingOrderMode::NonZero);
        if (isSecond) stroke->SetClipPath(clip->Clone(), WindingOrderMode::NonZero);
        EXPECT_EQ(fill->TryCombineFillStroke(stroke), isFirst && isSecond);
    }
    single->path->AddRectangle({20, 20, 30, 30});
    pair->path->curves.front()->nodes.resize(10);
    EXPECT_FALSE(single->TryCombineFillStroke(pair));
}

} // namespace
} // namespace Quillet::Test
