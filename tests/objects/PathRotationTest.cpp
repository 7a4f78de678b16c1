#include "MakeObjects.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <tuple>
#include <vector>

namespace Quillet::Test {
namespace {

using Point = Kernel::PointT<double>;
using Curve = Kernel::Counted<Geometry::CurveDbl>;
using Geometry::WindingOrderMode;

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

/// An ellipse of `sides` chords; the vertex `bumped`, if there is one, stands out by `bump`.
Curve MakeRoundPolygon(int sides, double radiusX, double radiusY, double degrees, int bumped = -1, double bump = 0)
{
    std::vector<Point> points;
    for (int i = 0; i < sides; ++i) {
        const double angle = 2 * std::numbers::pi * i / sides;
        const double grown = i == bumped ? bump : 0;
        points.push_back({(radiusX + grown) * std::cos(angle), (radiusY + grown) * std::sin(angle)});
    }
    return MakePolygon(points, degrees);
}

const std::vector<Point> c_corners{{0, 0}, {100, 0}, {100, 40}, {0, 40}};

/// What the object's transform does to it: a flip, or a turn by so many degrees, counterclockwise with y upward.
constexpr double c_flip = 1000;

char GetShape(const PathObject& object)
{
    return object.isRectangle ? 'r' : object.isEllipse ? 'e' : object.isStraightLine ? 'l' : '-';
}

/// The path must be where it was, however it is turned in its own space; the centre of its box stays put even there.
void ExpectInPlace(const PathObject& object, const Geometry::CurveDbl& original, const Params& toPage)
{
    const auto& nodes = object.path->curves.front()->nodes;
    ASSERT_EQ(nodes.size(), original.nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const Point onPage = toPage.ApplyTo(original.nodes[i].point);
        EXPECT_TRUE(nodes[i].IsEqual({object.transform.GetInverse().ApplyTo(onPage), nodes[i].style}, 1e-9));
    }
    const Point centre = original.GetApproxBBox().GetCentre();
    const Point moved = object.transform.ApplyTo(centre);
    EXPECT_NEAR(moved.x, toPage.ApplyTo(centre).x, 1e-9);
    EXPECT_NEAR(moved.y, toPage.ApplyTo(centre).y, 1e-9);
}

TEST(PathRotation, StandsShapesUpright)
{
    const Params place = Params::Translation(300, 200);
    const std::tuple<const char*, Curve, double, char> rows[] = {
        {"rectangle", MakePolygon(c_corners, 0), c_flip, 'r'},
        {"rectangle at 30", MakePolygon(c_corners, 30), 30, 'r'},
        {"triangle at 30", MakePolygon({{0, 0}, {50, 0}, {20, 30}}, 30), c_flip, '-'},
        {"line at -90", MakePolygon({{0, 0}, {50, 0}}, -90, false), -90, 'l'},
        {"dot", MakePolygon({{0, 0}, {1e-7, 0}}, 0, false), c_flip, 'l'},
        {"ellipse at 30 from its side", MakeOval(place * MakeTurn(30) * Params::Scale(50, 20)), 120, 'e'},
        {"polygon of 31", MakeRoundPolygon(31, 10, 10, 0), 180 - 180.0 / 62, 'e'},
        {"polygon of 29", MakeRoundPolygon(29, 10, 10, 0), c_flip, '-'},
        {"polygon of 36, an ellipse at 25", MakeRoundPolygon(36, 60, 20, 25), 25 - 180, 'e'},
        {"polygon of 36, one vertex near", MakeRoundPolygon(36, 80, 80, 0, 5, 0.06), 180, 'e'},
        {"polygon of 36, one vertex off", MakeRoundPolygon(36, 80, 80, 0, 5, 0.065), c_flip, '-'},
    };
    for (const auto& [name, curve, turn, shape] : rows) {
        SCOPED_TRACE(name);
        PathObject object(nullptr, Rect{}, nullptr);
        object.SetPath(MakePath(curve), WindingOrderMode::EvenOdd, false);

        Params expected = turn == c_flip ? Params::Scale(1, -1) : MakeTurn(turn);
        expected.e = object.transform.e;
        expected.f = object.transform.f;
        EXPECT_TRUE(expected.IsEqual(object.transform, 1e-9));
        EXPECT_EQ(GetShape(object), shape);
        ExpectInPlace(object, *curve, {});
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
    for (const Curve& curve : {bulging, MakePolygon(zigzag, 0)}) {
        PathObject object(nullptr, Rect{}, nullptr);
        object.SetPath(MakePath(curve), WindingOrderMode::NonZero, false);
        EXPECT_FALSE(object.isEllipse);
    }
}

TEST(PathRotation, MeasuresShapesOnThePage)
{
    // A corner 0.05 off is within a sixteenth of a point, unless the page shows it enlarged.
    auto corners = c_corners;
    corners[2].y += 0.05;
    const auto isRectangle = [path = MakePath(MakePolygon(corners, 0))](const Params& toPage) {
        PathObject object(nullptr, Rect{}, nullptr);
        object.SetTransform(toPage);
        object.SetPath(path, WindingOrderMode::NonZero, false);
        if (toPage.GetDeterminant() != 0) ExpectInPlace(object, *path->curves.front(), toPage);
        return object.isRectangle;
    };
    EXPECT_TRUE(isRectangle({}));
    EXPECT_TRUE(isRectangle(MakeTurn(45) * Params::Scale(1.2, 1.2)));
    EXPECT_FALSE(isRectangle(MakeTurn(45) * Params::Scale(1.3, 1.3)));
    EXPECT_FALSE(isRectangle({0, 0, 0, 0, 0, 0}));
}

TEST(PathRotation, KeepsTheOrientationOnRequestUnlessTheShapeIsTurned)
{
    PathObject object(nullptr, Rect{}, nullptr);
    object.SetPath(MakeRectangle({1, 2, 30, 40}), WindingOrderMode::NonZero, true);
    EXPECT_EQ(object.transform, Params{});
    EXPECT_EQ(object.bbox, (Rect{1, 2, 30, 40}));

    const auto turned = MakePath(MakePolygon(c_corners, 30));
    const Point first = turned->curves.front()->nodes.front().point;
    object.SetPath(turned, WindingOrderMode::NonZero, true);
    EXPECT_EQ(turned->curves.front()->nodes.front().point, first) << "the given path stays as it is";
    EXPECT_NEAR(object.transform.b, 0.5, 1e-9);
}

TEST(PathRotation, SurvivesCoordinatesThatAreNotFinite)
{
    for (const double value :
         {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN(), 1e308}) {
        const std::vector<Point> twice(2, {value, -value});
        const std::vector<Point> corners{{value, 0}, {0, -value}, {-value, value}, {0, value}};
        const std::vector<Point> many(40, {value, -value});
        for (const Curve& curve : {MakePolygon(twice, 0, false), MakePolygon(corners, 0), MakePolygon(many, 0)}) {
            PathObject object(nullptr, Rect{}, MakePaint());
            object.SetPath(MakePath(curve), WindingOrderMode::NonZero, false);
            EXPECT_FALSE(object.isEllipse);
            EXPECT_EQ(object.path->curves.front()->nodes.size(), curve->nodes.size());
        }
    }
}

} // namespace
} // namespace Quillet::Test
