#include <Renderer/ColourGrayscale.h>
#include <Renderer/FillSolid.h>
#include <Renderer/LineStyleDescriptor.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace {

using namespace Renderer;
using Raster::AffineTransform::Params;
using Point = Kernel::PointT<double>;
using Rect = Kernel::RectT<double>;

Kernel::Consolidated<LineStyle> Intern(const LineStyle& style)
{
    return Kernel::ConsolidateObjectPostAlloc(style);
}

LineStyle MakeStyle(int join, int cap, double width, double mitreLimit = 10)
{
    LineStyle style;
    style.join = join;
    style.cap = cap;
    style.width = width;
    style.mitreLimit = mitreLimit;
    return style;
}

LineStyle Dashed(LineStyle style, std::vector<double> dashes)
{
    style.dashKind = LineStyle::DashDashed;
    style.dashes = std::move(dashes);
    style.isDashScaledToFit = false;
    return style;
}

TEST(LineStyle, DashesCountOnlyInDashedLines)
{
    const auto solid = Intern(LineStyle());
    LineStyle wasDashed = Dashed(LineStyle(), {3, 1});
    wasDashed.dashKind = LineStyle::DashSolid;
    EXPECT_EQ(Intern(wasDashed), solid);

    const auto dashed = Intern(Dashed(LineStyle(), {3, 1}));
    EXPECT_EQ(Intern(Dashed(LineStyle(), {3, 1})), dashed);
    EXPECT_FALSE(dashed == solid);
    EXPECT_FALSE(Intern(Dashed(LineStyle(), {1, 3})) == dashed);
}

TEST(LineStyleDescriptor, NeedsAWidthAndAPen)
{
    const auto pen = Kernel::MakeCounted<FillDescriptor>(
        Kernel::ConsolidateObjectPostAlloc(FillSolid(ColourGrayscale::Create(0, 1, 1, ""))), FillBlendMode::Normal);
    const LineStyleDescriptor line(Intern(LineStyle()));
    EXPECT_TRUE(line.IsLineStyleVisible(pen));
    EXPECT_FALSE(line.IsLineStyleVisible(FillDescriptor::CreateNone()));
    EXPECT_FALSE(
        LineStyleDescriptor(Intern(MakeStyle(LineStyle::JoinRound, LineStyle::CapButt, 0))).IsLineStyleVisible(pen));
    EXPECT_FALSE(LineStyleDescriptor(nullptr).IsLineStyleVisible(pen));
}

Geometry::CurveDbl MakeCurve(const std::vector<Point>& points, bool isClosed)
{
    Geometry::CurveDbl curve;
    for (const Point point : points)
        curve.AddNode(point);
    curve.SetClosed(isClosed);
    return curve;
}

Geometry::PolyCurveDbl MakePath(const std::vector<Geometry::CurveDbl>& curves)
{
    Geometry::PolyCurveDbl path;
    for (const Geometry::CurveDbl& curve : curves)
        path.AddCurve(curve.Clone());
    return path;
}

void ExpectNear(const Rect& box, const Rect& expected)
{
    constexpr double c_rounding = 1e-9;
    EXPECT_TRUE(box.Inflated(c_rounding).Contains(expected) && expected.Inflated(c_rounding).Contains(box))
        << box.left << ' ' << box.top << ' ' << box.right << ' ' << box.bottom;
}

TEST(LineStyleDescriptor, MitresCountWhereThereAreCorners)
{
    constexpr double c_noNumber = std::numeric_limits<double>::quiet_NaN();
    // The height of a triangle of equal sides, each of length 10: the tips of its mitres are one width away.
    const double h = 5 * std::numbers::sqrt3;
    const double tip = std::numbers::sqrt3;
    Geometry::CurveDbl smooth = MakeCurve({{0, 0}}, false);
    smooth.AddBezierCurve({10, 10}, {0, 5}, {5, 10});
    smooth.AddBezierCurve({20, 0}, {15, 10}, {20, 5});
    Geometry::CurveDbl bent = MakeCurve({{0, -5}, {h, 0}}, false);
    bent.AddBezierCurve({0, 5}, {h, 0}, {h / 2, 2.5});
    // The curve, its mitre limit, and the box of its stroke.
    const std::tuple<const char*, Geometry::CurveDbl, double, Rect> rows[] = {
        {"a rule", MakeCurve({{0, 0}, {10, 0}}, false), 10, {-1, -1, 11, 1}},
        {"a corner", MakeCurve({{0, -5}, {h, 0}, {0, 5}}, false), 10, {-1, -6, h + 2, 6}},
        {"at the limit", MakeCurve({{0, -5}, {h, 0}, {0, 5}}, false), 2, {-1, -6, h + 2, 6}},
        {"too sharp", MakeCurve({{0, -5}, {h, 0}, {0, 5}}, false), 1.99, {-1, -6, h + 1, 6}},
        {"no length at the corner", MakeCurve({{0, -5}, {h, 0}, {h, 0}, {0, 5}}, false), 10, {-1, -6, h + 2, 6}},
        {"a way back", MakeCurve({{0, 0}, {7, 3}, {0.7, 0.3}, {0, 0}}, false), 1e300, {-1, -1, 8, 4}},
        {"closed", MakeCurve({{h, 0}, {0, 5}, {0, -5}}, true), 10, {-1, -5 - tip, h + 2, 5 + tip}},
        {"closed twice", MakeCurve({{h, 0}, {0, 5}, {0, -5}, {h, 0}}, true), 10, {-1, -5 - tip, h + 2, 5 + tip}},
        {"left open", MakeCurve({{h, 0}, {0, 5}, {0, -5}, {h, 0}}, false), 10, {-1, -5 - tip, h + 1, 5 + tip}},
        {"smooth", smooth, 10, {-1, -1, 21, 11}},
        {"a handle on its node", bent, 10, {-1, -6, h + 2, 6}},
        {"no number", MakeCurve({{0, -5}, {h, 0}, {c_noNumber, 0}, {0, 5}}, false), 10, {-1, -6, h + 1, 6}},
        {"a point", MakeCurve({{3, 3}, {3, 3}}, true), 10, {2, 2, 4, 4}},
    };
    for (const auto& [name, curve, limit, box] : rows) {
        SCOPED_TRACE(name);
        const Rect bare = curve.GetApproxBBox();
        const LineStyleDescriptor line(Intern(MakeStyle(LineStyle::JoinMitre, LineStyle::CapButt, 2, limit)));
        ExpectNear(line.InflateSpreadRect(bare, Params{}, curve), box);
        // However an object is placed, its stroke on the page is the same.
        for (const Params& toPage : {Params::Scale(0.5, 0.5), Params::FromPdf(0, 2, -0.25, 0, 100, -40)}) {
            const Params fromPage = toPage.GetInverse();
            Geometry::CurveDbl own = curve;
            own.Transform(fromPage);
            ExpectNear(line.InflateSpreadRect(bare, toPage, own), box);
            ExpectNear(line.InflateBaseRect(own.GetApproxBBox(), toPage, toPage, MakePath({own})),
                       fromPage.ApplyTo(box));
        }
        for (const int join : {LineStyle::JoinRound, LineStyle::JoinBevel}) {
            const LineStyleDescriptor other(Intern(MakeStyle(join, LineStyle::CapButt, 2, limit)));
            EXPECT_EQ(other.InflateSpreadRect(bare, {}, curve), bare.Inflated(1));
        }
    }
}

TEST(LineStyleDescriptor, LineEndsCountWhereThereAreEnds)
{
    const LineStyle square = MakeStyle(LineStyle::JoinRound, LineStyle::CapProjectingSquare, 2);
    const Rect rect{0, 0, 1, 1};
    const Geometry::CurveDbl open = MakeCurve({{0, 0}, {1, 1}}, false);
    const Geometry::CurveDbl closed = MakeCurve({{0, 0}, {1, 1}}, true);
    const LineStyleDescriptor solid(Intern(square));
    EXPECT_EQ(solid.InflateSpreadRect(rect, {}, closed), rect.Inflated(1));
    EXPECT_EQ(solid.InflateSpreadRect(rect, {}, open), rect.Inflated(std::numbers::sqrt2));
    EXPECT_EQ(solid.InflateBaseRect(rect, {}, {}, MakePath({closed, open})), rect.Inflated(std::numbers::sqrt2));
    EXPECT_EQ(solid.InflateBaseRect(rect, Params::Scale(10, 10), Params{}, MakePath({closed})), (Rect{-1, -1, 11, 11}))
        << "the result in another space";
    const Params turned = Params::FromPdf(1, 1, -1, 1, 0, 0);
    ExpectNear(solid.InflateBaseRect(rect, turned, turned, MakePath({closed})), rect.Inflated(std::sqrt(0.5)));
    const LineStyleDescriptor round(Intern(MakeStyle(LineStyle::JoinRound, LineStyle::CapHalfCircle, 3)));
    EXPECT_EQ(round.InflateSpreadRect(rect, {}, open), rect.Inflated(1.5));
    const LineStyleDescriptor dashed(Intern(Dashed(square, {1})));
    EXPECT_EQ(dashed.InflateSpreadRect(rect, {}, closed), rect.Inflated(std::numbers::sqrt2));
}

TEST(LineStyleDescriptor, OddInputStaysFinite)
{
    constexpr double c_infinity = std::numeric_limits<double>::infinity();
    constexpr double c_noNumber = std::numeric_limits<double>::quiet_NaN();
    const Rect rect{0, 0, 4, 4};
    const Geometry::CurveDbl curve = MakeCurve({{0, 0}, {4, 2}, {0, 4}, {1e300, -1e300}, {-1e308, 1e308}}, true);
    for (const double value : {1e300, c_infinity, c_noNumber, -1.0}) {
        for (const LineStyle& style : {MakeStyle(LineStyle::JoinMitre, LineStyle::CapButt, value),
                                       MakeStyle(LineStyle::JoinMitre, LineStyle::CapButt, 1, value)}) {
            const LineStyleDescriptor descriptor(Intern(style));
            for (const Params& transform : {Params{}, Params::Scale(1e-20, 1e-20), Params::Scale(0, 0)}) {
                const Rect base = descriptor.InflateBaseRect(rect, transform, transform, MakePath({curve}));
                EXPECT_TRUE(std::isfinite(base.left) && std::isfinite(base.bottom)) << value;
                EXPECT_TRUE(base.Contains(rect)) << value;
            }
        }
    }
    const LineStyleDescriptor line(Intern(LineStyle()));
    EXPECT_TRUE(line.InflateSpreadRect(Rect::MakeEmpty(), {}, curve).IsEmpty());
}

} // namespace
