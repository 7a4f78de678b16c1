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

// What follows outlines strokes point by point and compares that with the boxes, which look at the style alone.

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
    constexpr double c_rounding = 1e-9;
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
                const std::vector<bool> areClosed{shape.isClosed};
                const Rect spread = descriptor.InflateSpreadRect(BoxOf(onPage.points), areClosed);
                EXPECT_TRUE(spread.Inflated(c_rounding).Contains(BoxOf(outline)));
                const Rect base = descriptor.InflateBaseRect(BoxOf(shape.points), transform, transform, areClosed);
                EXPECT_TRUE(base.Inflated(c_rounding).Contains(BoxOf(ownOutline)));
            }
        }
    }
}

TEST(LineStyleDescriptor, ReachIsAttained)
{
    // The limit of the acute corner is just enough; the outline gets a little more, against rounding.
    const std::pair<const Polyline&, LineStyle> rows[] = {
        {c_shapes[3], MakeStyle(LineStyle::JoinMitre, LineStyle::CapButt, 2, std::sqrt(401.0))},
        {c_shapes[1], MakeStyle(LineStyle::JoinRound, LineStyle::CapProjectingSquare, 2)},
        {c_shapes[0], MakeStyle(LineStyle::JoinRound, LineStyle::CapHalfCircle, 2)},
    };
    for (const auto& [shape, style] : rows) {
        LineStyle widest = style;
        widest.mitreLimit += 1e-9;
        const Rect own = BoxOf(shape.points);
        const double right = BoxOf(Outline(shape, widest)).right;
        const LineStyleDescriptor descriptor(Intern(style));
        EXPECT_NEAR(descriptor.InflateSpreadRect(own, false).right, right, 1e-6);
        // On an object at half size the same stroke is twice as wide.
        const Params scale = Params::Scale(0.5, 0.5);
        EXPECT_NEAR(descriptor.InflateBaseRect(own, scale, scale, {false}).right, 2 * right - own.right, 1e-6);
    }
}

TEST(LineStyleDescriptor, LineEndsCountWhereThereAreEnds)
{
    const LineStyle square = MakeStyle(LineStyle::JoinRound, LineStyle::CapProjectingSquare, 2);
    const Rect rect{0, 0, 1, 1};
    const LineStyleDescriptor solid(Intern(square));
    EXPECT_EQ(solid.InflateSpreadRect(rect, {true, true}), rect.Inflated(1));
    EXPECT_EQ(solid.InflateSpreadRect(rect, {true, false}), rect.Inflated(std::numbers::sqrt2));
    EXPECT_EQ(solid.InflateBaseRect(rect, Params::Scale(10, 10), Params{}, {true}), (Rect{-1, -1, 11, 11}))
        << "the result in another space";
    const LineStyleDescriptor dashed(Intern(Dashed(square, {1})));
    EXPECT_EQ(dashed.InflateSpreadRect(rect, {true, true}), rect.Inflated(std::numbers::sqrt2));
}

TEST(LineStyleDescriptor, OddInputStaysFinite)
{
    constexpr double c_infinity = std::numeric_limits<double>::infinity();
    constexpr double c_noNumber = std::numeric_limits<double>::quiet_NaN();
    const Rect rect{0, 0, 4, 4};
    for (const double value : {1e300, c_infinity, c_noNumber, -1.0}) {
        for (const LineStyle& style : {MakeStyle(LineStyle::JoinMitre, LineStyle::CapButt, value),
                                       MakeStyle(LineStyle::JoinMitre, LineStyle::CapButt, 1, value)}) {
            const LineStyleDescriptor descriptor(Intern(style));
            for (const Params& transform : {Params{}, Params::Scale(1e-20, 1e-20), Params::Scale(0, 0)}) {
                const Rect base = descriptor.InflateBaseRect(rect, transform, transform, {false});
                EXPECT_TRUE(std::isfinite(base.left) && std::isfinite(base.bottom)) << value;
                EXPECT_TRUE(base.Contains(rect)) << value;
            }
        }
    }
    const LineStyleDescriptor line(Intern(LineStyle()));
    EXPECT_TRUE(line.InflateSpreadRect(Rect::MakeEmpty(), false).IsEmpty());
}

} // namespace
