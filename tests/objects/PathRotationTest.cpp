#include "MakeObjects.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <string>
#include <vector>

namespace Quillet::Test {
namespace {

using Point = Kernel::PointT<double>;
using Curve = Kernel::Counted<Geometry::CurveDbl>;
using Geometry::WindingOrderMode;

constexpr double c_pi = std::numbers::pi;

Params MakeTurn(double degrees)
{
    const double angle = degrees * c_pi / 180;
    return Params::FromPdf(std::cos(angle), std::sin(angle), -std::sin(angle), std::cos(angle), 0, 0);
}

/// Away from the origin, so that a turn about the wrong centre shows.
Curve MakePolygon(const std::vector<Point>& points, double degrees, bool closed = true)
{
    const auto curve = Kernel::MakeCounted<Geometry::CurveDbl>();
    for (const Point& point : points)
        curve->AddNode(point);
    if (closed) {
        curve->AddNode(points.front());
        curve->MakeClosed();
    }
    curve->Transform(Params::Translation(300, 200) * MakeTurn(degrees));
    return curve;
}

/// Four arcs that start at the angle `start`, which is a multiple of a right angle.
Curve MakeOval(double radiusX, double radiusY, double start, double degrees)
{
    constexpr double k = 0.5522847498307936;
    const Params toOval =
        Params::Translation(300, 200) * MakeTurn(degrees) * Params::Scale(radiusX, radiusY) * MakeTurn(start);
    const auto curve = Kernel::MakeCounted<Geometry::CurveDbl>();
    curve->AddNode({1, 0});
    curve->AddBezierCurve({0, 1}, {1, k}, {k, 1});
    curve->AddBezierCurve({-1, 0}, {-k, 1}, {-1, k});
    curve->AddBezierCurve({0, -1}, {-1, -k}, {-k, -1});
    curve->AddBezierCurve({1, 0}, {k, -1}, {1, -k});
    curve->MakeClosed();
    curve->Transform(toOval);
    return curve;
}

/// An ellipse of `sides` chords; the vertex `bumped`, if there is one, stands out by `bump`.
Curve MakeRoundPolygon(int sides, double radiusX, double radiusY, double degrees, int bumped = -1, double bump = 0)
{
    std::vector<Point> points;
    for (int i = 0; i < sides; ++i) {
        const double angle = 2 * c_pi * i / sides;
        const double grown = i == bumped ? bump : 0;
        points.push_back({(radiusX + grown) * std::cos(angle), (radiusY + grown) * std::sin(angle)});
    }
    return MakePolygon(points, degrees);
}

std::vector<Point> MakeCorners(double width, double height, double slant = 0)
{
    return {{0, 0}, {width, 0}, {width + slant, height}, {slant, height}};
}

/// What the object's transform does to it: a flip, or a turn by so many degrees, counterclockwise with y upward.
constexpr double c_flip = 1000;

enum class Shape { None, Rectangle, Ellipse, Line };

struct Row
{
    const char* name;
    Curve curve;
    double turn;
    Shape shape;
};

Shape GetShape(const PathObject& object)
{
    if (object.isRectangle) return Shape::Rectangle;
    if (object.isEllipse) return Shape::Ellipse;
    return object.isStraightLine ? Shape::Line : Shape::None;
}

/// The path must be where it was, however it is turned in its own space; the centre of its box stays put even there.
void ExpectInPlace(const PathObject& object, const Geometry::CurveDbl& original, const Params& toPage)
{
    const auto& nodes = object.path->curves.front()->nodes;
    ASSERT_EQ(nodes.size(), original.nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        EXPECT_TRUE(nodes[i].IsEqual(
            {object.transform.GetInverse().ApplyTo(toPage.ApplyTo(original.nodes[i].point)), nodes[i].style}, 1e-9));
    }
    const Point centre = original.GetApproxBBox().GetCentre();
    const Point moved = object.transform.ApplyTo(centre);
    EXPECT_NEAR(moved.x, toPage.ApplyTo(centre).x, 1e-9);
    EXPECT_NEAR(moved.y, toPage.ApplyTo(centre).y, 1e-9);
}

TEST(PathRotation, StandsShapesUpright)
{
    const double smallestRound = 10;
    const Row rows[] = {
        {"rectangle", MakePolygon(MakeCorners(100, 40), 0), c_flip, Shape::Rectangle},
        {"rectangle at 30", MakePolygon(MakeCorners(100, 40), 30), 30, Shape::Rectangle},
        {"rectangle at 90", MakePolygon(MakeCorners(100, 40), 90), 90, Shape::Rectangle},
        {"rectangle at 180", MakePolygon(MakeCorners(100, 40), 180), 180, Shape::Rectangle},
        {"rectangle at -45", MakePolygon(MakeCorners(100, 40), -45), -45, Shape::Rectangle},
        {"parallelogram at 30", MakePolygon(MakeCorners(100, 40, 20), 30), 30, Shape::None},
        {"triangle at 30", MakePolygon({{0, 0}, {50, 0}, {20, 30}}, 30), c_flip, Shape::None},
        {"line", MakePolygon({{0, 0}, {50, 0}}, 0, false), c_flip, Shape::Line},
        {"line at 45", MakePolygon({{0, 0}, {50, 0}}, 45, false), 45, Shape::Line},
        {"line at -90", MakePolygon({{0, 0}, {50, 0}}, -90, false), -90, Shape::Line},
        {"dot", MakePolygon({{0, 0}, {1e-7, 0}}, 0, false), c_flip, Shape::Line},
        {"circle from the smallest y", MakeOval(50, 50, -90, 0), c_flip, Shape::Ellipse},
        {"circle from the right", MakeOval(50, 50, 0, 0), 90, Shape::Ellipse},
        {"circle from the largest y", MakeOval(50, 50, 90, 0), 180, Shape::Ellipse},
        {"ellipse at 30 from its lowest", MakeOval(50, 20, -90, 30), 30, Shape::Ellipse},
        {"ellipse at 30 from its side", MakeOval(50, 20, 0, 30), 120, Shape::Ellipse},
        {"polygon of 36", MakeRoundPolygon(36, 80, 80, 0), 180, Shape::Ellipse},
        {"polygon of 31", MakeRoundPolygon(31, smallestRound, smallestRound, 0), 180 - 180.0 / 62, Shape::Ellipse},
        {"polygon of 29", MakeRoundPolygon(29, smallestRound, smallestRound, 0), c_flip, Shape::None},
        {"polygon of 36, an ellipse at 25", MakeRoundPolygon(36, 60, 20, 25), 25 - 180, Shape::Ellipse},
        {"polygon of 36, one vertex near", MakeRoundPolygon(36, 80, 80, 0, 5, 0.06), 180, Shape::Ellipse},
        {"polygon of 36, one vertex off", MakeRoundPolygon(36, 80, 80, 0, 5, 0.065), c_flip, Shape::None},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const auto path = Kernel::MakeCounted<Geometry::PolyCurveDbl>();
        path->AddCurve(row.curve);
        PathObject object(nullptr, Rect{}, nullptr);
        object.SetPath(path, WindingOrderMode::EvenOdd, false);

        const Params& transform = object.transform;
        if (row.turn == c_flip) {
            EXPECT_TRUE(Params::FromPdf(1, 0, 0, -1, transform.e, transform.f).IsEqual(transform, 1e-9));
        } else {
            Params turn = MakeTurn(row.turn);
            turn.e = transform.e;
            turn.f = transform.f;
            EXPECT_TRUE(turn.IsEqual(transform, 1e-9)) << std::atan2(transform.b, transform.a) * 180 / c_pi;
        }
        EXPECT_EQ(GetShape(object), row.shape);
        EXPECT_EQ(object.winding, WindingOrderMode::EvenOdd);
        ExpectInPlace(object, *row.curve, {});
        EXPECT_EQ(object.bbox, object.path->GetApproxBBox());
    }
}

TEST(PathRotation, LooksForEllipsesInStraightPolygonsOnly)
{
    const Curve bulging = MakeRoundPolygon(36, 80, 80, 0);
    bulging->nodes[13].point.x += 1;
    // Up and down one line: all vertices are as far from the centre as the first once the height is flattened away.
    std::vector<Point> zigzag;
    for (int i = 0; i < 40; ++i)
        zigzag.push_back({0, i % 2 == 0 ? 0.0 : 70.0});
    const auto rounds = Kernel::MakeCounted<Geometry::PolyCurveDbl>();
    rounds->AddCurve(MakeRoundPolygon(36, 80, 80, 0));
    rounds->AddCurve(MakeRoundPolygon(36, 40, 40, 0));

    std::vector<Kernel::Counted<Geometry::PolyCurveDbl>> paths{rounds};
    for (const Curve& curve : {bulging, MakePolygon(zigzag, 0)}) {
        paths.push_back(Kernel::MakeCounted<Geometry::PolyCurveDbl>());
        paths.back()->AddCurve(curve);
    }
    for (const auto& path : paths) {
        PathObject object(nullptr, Rect{}, nullptr);
        EXPECT_EQ(object.GuessRotation(path, path->GetApproxBBox()), (std::pair<double, double>{1, 0}));
        object.SetPath(path, WindingOrderMode::NonZero, false);
        EXPECT_FALSE(object.isEllipse);
    }
}

TEST(PathRotation, MeasuresShapesOnThePage)
{
    struct Scaled
    {
        Params toPage;
        bool isRectangle;
    };
    // A corner 0.05 off is within a sixteenth of a point, unless the page shows it enlarged.
    const Scaled rows[] = {
        {{}, true},
        {Params::Scale(1.2, 1.2), true},
        {Params::Scale(1.3, 1.3), false},
        {MakeTurn(45) * Params::Scale(1.2, 1.2), true},
        {MakeTurn(45) * Params::Scale(1.3, 1.3), false},
        {{0, 0, 0, 0, 0, 0}, false},
    };
    auto corners = MakeCorners(100, 40);
    corners[2].y += 0.05;
    const auto path = Kernel::MakeCounted<Geometry::PolyCurveDbl>();
    path->AddCurve(MakePolygon(corners, 0));
    for (const Scaled& row : rows) {
        PathObject object(nullptr, Rect{}, nullptr);
        object.SetTransform(row.toPage);
        object.SetPath(path, WindingOrderMode::NonZero, false);
        EXPECT_EQ(object.isRectangle, row.isRectangle) << row.toPage.a << " " << row.toPage.b;
        if (row.toPage.GetDeterminant() != 0) ExpectInPlace(object, *path->curves.front(), row.toPage);
    }
}

TEST(PathRotation, KeepsTheOrientationOnRequestUnlessTheShapeIsTurned)
{
    PathObject object(nullptr, Rect{}, nullptr);
    object.SetPath(MakeRectangle({1, 2, 30, 40}), WindingOrderMode::NonZero, true);
    EXPECT_EQ(object.transform, Params{});
    EXPECT_EQ(object.bbox, (Rect{1, 2, 30, 40}));
    EXPECT_TRUE(object.isRectangle);

    const auto turned = Kernel::MakeCounted<Geometry::PolyCurveDbl>();
    turned->AddCurve(MakePolygon(MakeCorners(100, 40), 30));
    object.SetPath(turned, WindingOrderMode::NonZero, true);
    EXPECT_NEAR(object.transform.b, 0.5, 1e-9);
}

TEST(PathRotation, LeavesTheGivenPathAsItIs)
{
    const auto path = MakeRectangle({1, 2, 30, 40});
    PathObject object(nullptr, Rect{}, nullptr);
    object.SetPath(path, WindingOrderMode::NonZero, false);
    EXPECT_EQ(path->curves.front()->nodes.front().point, (Point{1, 2}));
    EXPECT_EQ(object.path->curves.front()->nodes.front().point, (Point{1, 40}));
}

TEST(PathRotation, SurvivesCoordinatesThatAreNotFinite)
{
    for (const double value :
         {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN(), 1e308}) {
        const std::vector<Point> twice(2, {value, -value});
        const std::vector<Point> corners{{value, 0}, {0, -value}, {-value, value}, {0, value}};
        const std::vector<Point> many(40, {value, -value});
        for (const Curve& curve : {MakePolygon(twice, 0, false), MakePolygon(corners, 0), MakePolygon(many, 0)}) {
            const auto path = Kernel::MakeCounted<Geometry::PolyCurveDbl>();
            path->AddCurve(curve);
            PathObject object(nullptr, Rect{}, MakePaint());
            object.SetPath(path, WindingOrderMode::NonZero, false);
            EXPECT_FALSE(object.isEllipse);
            EXPECT_EQ(object.path->curves.front()->nodes.size(), curve->nodes.size());
        }
    }
}

TEST(PathRotation, GivesTheNormalOfTwoNodes)
{
    const PathObject object(nullptr, Rect{}, nullptr);
    const std::vector<Geometry::CurveNode> nodes{{{0, 0}, {}}, {{3, 4}, {}}, {{3, 4 + 1e-7}, {}}};
    const auto normal = object.GuessRotation(nodes, 0, 1);
    EXPECT_NEAR(normal.first, -0.8, 1e-12);
    EXPECT_NEAR(normal.second, 0.6, 1e-12);
    EXPECT_EQ(object.GuessRotation(nodes, 1, 2), (std::pair<double, double>{0, 1}));
}

} // namespace
} // namespace Quillet::Test
