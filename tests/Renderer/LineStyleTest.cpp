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

// What follows outlines strokes point by point and compares that with the boxes.

struct Polyline
{
    std::vector<Point> points;
    bool isClosed;
};

double Length(Point vector)
{
    return std::hypot(vector.x, vector.y);
}

Point Unit(Point vector)
{
    return vector * (1 / Length(vector));
}

Point Left(Point vector)
{
    return {-vector.y, vector.x};
}

void AddCircle(std::vector<Point>& outline, Point centre, double radius)
{
    for (int i = 0; i < 64; ++i) {
        const double angle = i * std::numbers::pi / 32;
        outline.push_back(centre + Point{radius * std::cos(angle), radius * std::sin(angle)});
    }
}

void AddCorner(std::vector<Point>& outline, Point before, Point corner, Point after, const LineStyle& style)
{
    const double radius = style.width / 2;
    if (style.join == LineStyle::JoinRound) AddCircle(outline, corner, radius);
    if (style.join != LineStyle::JoinMitre) return;
    const Point outward = Unit(corner - before) - Unit(after - corner);
    // Half the angle between the two edges; the tip lies at radius / sin of it (ISO 32000-2, 8.4.3.5).
    const Point arriving = Unit(before - corner);
    const Point leaving = Unit(after - corner);
    const double sine = std::sqrt((1 - (arriving.x * leaving.x + arriving.y * leaving.y)) / 2);
    if (1 / sine <= style.mitreLimit) outline.push_back(corner + Unit(outward) * (radius / sine));
}

void AddEnd(std::vector<Point>& outline, Point inner, Point end, const LineStyle& style)
{
    const double radius = style.width / 2;
    if (style.cap == LineStyle::CapHalfCircle) AddCircle(outline, end, radius);
    if (style.cap != LineStyle::CapProjectingSquare) return;
    const Point along = Unit(end - inner) * radius;
    outline.push_back(end + along + Left(along));
    outline.push_back(end + along - Left(along));
}

std::vector<Point> Outline(const Polyline& line, const LineStyle& style)
{
    std::vector<Point> outline;
    const std::size_t count = line.points.size();
    const auto at = [&](std::size_t i) { return line.points[i % count]; };
    const std::size_t edges = line.isClosed ? count : count - 1;
    for (std::size_t i = 0; i < edges; ++i) {
        const Point side = Left(Unit(at(i + 1) - at(i))) * (style.width / 2);
        for (const Point point : {at(i), at(i + 1)}) {
            outline.push_back(point + side);
            outline.push_back(point - side);
        }
        if (line.isClosed || i + 1 < edges) AddCorner(outline, at(i), at(i + 1), at(i + 2), style);
    }
    if (!line.isClosed) {
        AddEnd(outline, at(1), at(0), style);
        AddEnd(outline, at(count - 2), at(count - 1), style);
    }
    return outline;
}

Rect BoxOf(const std::vector<Point>& points)
{
    Rect box = Rect::MakeEmpty();
    for (const Point point : points)
        box = box.Union(Rect::FromCorners(point, point));
    return box;
}

const Polyline c_shapes[] = {
    {{{0, 0}, {10, 0}}, false},                   // a line along x
    {{{0, 0}, {10, 10}}, false},                  // a diagonal
    {{{0, 0}, {10, 0}, {10, 10}, {0, 10}}, true}, // a square
    {{{0, 0}, {20, 1}, {0, 2}}, false},           // an acute corner just at a mitre limit of 20.05
    {{{0, 0}, {20, 2}, {0, 4}}, true},            // an acute corner with others
};

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

TEST(LineStyleDescriptor, BoxesHoldTheStroke)
{
    const Params transforms[] = {
        {},
        Params::Scale(3, -0.25),
        Params::FromPdf(std::cos(0.5), std::sin(0.5), -std::sin(0.5), std::cos(0.5), 100, -40),
        Params::FromPdf(2, 0.5, -3, 0.25, -7, 7),
    };
    const LineStyle styles[] = {
        MakeStyle(LineStyle::JoinMitre, LineStyle::CapButt, 2),
        MakeStyle(LineStyle::JoinMitre, LineStyle::CapProjectingSquare, 2, 1),
        MakeStyle(LineStyle::JoinMitre, LineStyle::CapHalfCircle, 1, 20.1),
        MakeStyle(LineStyle::JoinRound, LineStyle::CapHalfCircle, 3),
        MakeStyle(LineStyle::JoinBevel, LineStyle::CapProjectingSquare, 0.5),
    };
    for (const Polyline& shape : c_shapes) {
        for (const Params& transform : transforms) {
            for (const LineStyle& style : styles) {
                Polyline onPage = shape;
                for (Point& point : onPage.points)
                    point = transform.ApplyTo(point);
                const std::vector<Point> outline = Outline(onPage, style);
                std::vector<Point> ownOutline = outline;
                for (Point& point : ownOutline)
                    point = transform.GetInverse().ApplyTo(point);

                const LineStyleDescriptor descriptor(Intern(style));
                const Geometry::CurveDbl curve = MakeCurve(shape.points, shape.isClosed);
                const Rect spread = descriptor.InflateSpreadRect(BoxOf(onPage.points), transform, curve);
                // No larger than the reach of the line, and what sticks out of it.
                const double reach = descriptor.GetReach(!shape.isClosed);
                ExpectNear(spread, BoxOf(onPage.points).Inflated(reach).Union(BoxOf(outline)));
                const Rect base =
                    descriptor.InflateBaseRect(BoxOf(shape.points), transform, transform, MakePath({curve}));
                EXPECT_TRUE(base.Inflated(1e-9).Contains(BoxOf(ownOutline)));
            }
        }
    }
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
    const struct
    {
        const char* name;
        Geometry::CurveDbl curve;
        double limit;
        Rect box;
    } rows[] = {
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
        {"nothing", {}, 10, {-1, -1, 1, 1}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const LineStyleDescriptor line(Intern(MakeStyle(LineStyle::JoinMitre, LineStyle::CapButt, 2, row.limit)));
        ExpectNear(line.InflateSpreadRect(row.curve.GetApproxBBox(), Params{}, row.curve), row.box);
        // On an object at half size the same stroke is twice as wide, and so are its mitres.
        const Params half = Params::Scale(0.5, 0.5);
        Geometry::CurveDbl twice = row.curve;
        twice.Transform(Params::Scale(2, 2));
        ExpectNear(line.InflateBaseRect(twice.GetApproxBBox(), half, half, MakePath({twice})),
                   Params::Scale(2, 2).ApplyTo(row.box));
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
