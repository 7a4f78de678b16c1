#include <Geometry/CurveDbl.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

using Geometry::CurveDbl;
using Raster::AffineTransform::Params;
using Point = Kernel::PointT<double>;

constexpr double c_infinity = std::numeric_limits<double>::infinity();
constexpr double c_nan = std::numeric_limits<double>::quiet_NaN();
constexpr double c_tolerance = 0.0625;
constexpr double c_circleHandle = 0.5522847498307936;

CurveDbl MakePolygon(const std::vector<Point>& corners)
{
    CurveDbl curve;
    for (const Point corner : corners)
        curve.AddNode(corner);
    return curve;
}

CurveDbl MakeTransformed(CurveDbl curve, const Params& transform)
{
    curve.Transform(transform);
    return curve;
}

/// A circle of radius 1 around the origin, from (1, 0), with handles of any length.
CurveDbl MakeCircle(double handle = c_circleHandle)
{
    CurveDbl curve;
    curve.AddNode({1, 0});
    curve.AddBezierCurve({0, 1}, {1, handle}, {handle, 1});
    curve.AddBezierCurve({-1, 0}, {-handle, 1}, {-1, handle});
    curve.AddBezierCurve({0, -1}, {-1, -handle}, {-handle, -1});
    curve.AddBezierCurve({1, 0}, {handle, -1}, {1, -handle});
    curve.MakeClosed();
    return curve;
}

TEST(CurveDblShapes, RectanglesOfAnyStartAndDirection)
{
    std::array<Point, 4> corners{Point{0, 0}, Point{20, 0}, Point{20, 10}, Point{0, 10}};
    for (int direction = 0; direction < 2; ++direction) {
        for (int start = 0; start < 4; ++start) {
            std::rotate(corners.begin(), corners.begin() + 1, corners.end());
            CurveDbl curve = MakePolygon({corners.begin(), corners.end()});
            EXPECT_FALSE(curve.IsRectangle(1e-6)) << "three sides, open";
            curve.MakeClosed();
            EXPECT_TRUE(curve.IsRectangle(1e-6)) << "closed without a fourth side";
            curve.AddNode(corners[0]);
            EXPECT_TRUE(curve.IsRectangle(1e-6));
            curve.SetClosed(false);
            EXPECT_TRUE(curve.IsRectangle(1e-6)) << "back at its start";
            EXPECT_FALSE(curve.IsEllipse(c_tolerance, CurveDbl::c_rotatedToo));
            curve.AddNode({5, 5});
            EXPECT_FALSE(curve.IsRectangle(1e-6)) << "a fifth side";
        }
        std::reverse(corners.begin(), corners.end());
    }
}

TEST(CurveDblShapes, RectangleTable)
{
    CurveDbl bulging = MakePolygon({{0, 0}, {20, 0}, {20, 10}, {0, 10}, {0, 0}});
    CurveDbl written = bulging;
    bulging.nodes[4].point = {20.1, 3};
    written.nodes[4].point = {20, 3};
    written.nodes[5].point = {20, 7};
    CurveDbl overshooting = written;
    overshooting.nodes[5].point = {20, 12};

    const std::tuple<const char*, CurveDbl, bool> cases[] = {
        {"a corner off by less", MakePolygon({{0, 0}, {20.06, -0.06}, {20, 10}, {0, 10}, {0, 0}}), true},
        {"a corner off by more", MakePolygon({{0, 0}, {20.07, 0}, {20, 10}, {0, 10}, {0, 0}}), false},
        {"bow tie", MakePolygon({{0, 0}, {20, 10}, {20, 0}, {0, 10}, {0, 0}}), false},
        {"parallelogram", MakePolygon({{0, 0}, {20, 0}, {25, 10}, {5, 10}, {0, 0}}), false},
        {"sides written as curves", written, true},
        {"a control beside its side", bulging, false},
        {"a control beyond its side", overshooting, false},
        {"thin rule", MakePolygon({{0, 0}, {200, 0}, {200, 0.01}, {0, 0.01}, {0, 0}}), true},
        {"thin wedge", MakePolygon({{0, 0}, {200, 0.005}, {200, 0.01}, {0, 0.01}, {0, 0}}), false},
        {"small square", MakePolygon({{0, 0}, {0.001, 0}, {0.001, 0.001}, {0, 0.001}, {0, 0}}), true},
        {"small round dot", MakeTransformed(MakeCircle(), Params::Scale(0.03, 0.03)), false},
        {"no height", MakePolygon({{0, 5}, {20, 5}, {20, 5}, {0, 5}, {0, 5}}), true},
    };
    for (const auto& [name, curve, expected] : cases)
        EXPECT_EQ(curve.IsRectangle(c_tolerance), expected) << name;
}

TEST(CurveDblShapes, StraightSegments)
{
    const std::tuple<const char*, Point, Point, Point, bool> cases[] = {
        {"controls at thirds", {10, 13.3333}, {20, 26.6667}, {30, 40}, true},
        {"within the tolerance", {10.04, 13.29}, {30, 40}, {30, 40}, true},
        {"beside the chord", {10.08, 13.24}, {30, 40}, {30, 40}, false},
        {"control before the start", {-3, -4}, {30, 40}, {30, 40}, false},
        {"control beyond the end", {0, 0}, {33, 44}, {30, 40}, false},
        {"three equal points", {0, 0}, {0, 0}, {0, 0}, true},
        {"a loop", {10, 0}, {0, 10}, {0, 0}, false},
        {"control that is no number", {c_nan, 0}, {30, 40}, {30, 40}, false},
    };
    for (const auto& [name, control1, control2, end, expected] : cases) {
        CurveDbl curve;
        curve.AddNode({0, 0});
        curve.AddBezierCurve(end, control1, control2);
        EXPECT_EQ(curve.IsStraightSegment(0, c_tolerance), expected) << name;
        EXPECT_EQ(curve.IsStraightLine(c_tolerance), expected) << name;
        curve.MakeClosed();
        EXPECT_FALSE(curve.IsStraightLine(c_tolerance)) << name;
    }
    EXPECT_FALSE(MakePolygon({{0, 0}, {10, 0}, {20, 0}}).IsStraightLine(c_tolerance));
}

TEST(CurveDblShapes, EllipseTable)
{
    const CurveDbl circle = MakeCircle();
    const Params place = Params::Translation(300, 200);
    const double root = std::sqrt(0.5);
    const auto at = [&](const Params& transform) { return MakeTransformed(circle, place * transform); };
    CurveDbl offset = at(Params::Scale(10, 10));
    offset.nodes[9].point.y -= 0.08;
    CurveDbl longWay = MakeCircle();
    longWay.nodes[1].point = {1, -3.2};
    longWay.nodes[2].point = {-3.2, 1};
    // The curve, whether it is an upright ellipse, and whether it is one at all.
    const std::tuple<const char*, CurveDbl, bool, bool> cases[] = {
        {"circle", at(Params::Scale(10, 10)), true, true},
        {"circle from a diagonal", at(Params::Scale(10, 10) * Params{root, -root, 0, root, root, 0}), false, true},
        {"hair-thin ellipse", at(Params::Scale(100, 0.02)), true, true},
        {"ellipse turned", at(Params{0.8, -0.6, 0, 0.6, 0.8, 0} * Params::Scale(40, 3)), false, true},
        {"large circle, handles 0.5", MakeTransformed(MakeCircle(0.5), Params::Scale(40, 40)), false, false},
        {"small circle, handles 0.5", MakeTransformed(MakeCircle(0.5), Params::Scale(2, 2)), true, true},
        {"small diamond", MakeTransformed(MakeCircle(0), Params::Scale(0.01, 0.01)), false, false},
        {"a node off the circle", offset, false, false},
        {"an arc the long way round", MakeTransformed(longWay, Params::Scale(0.2, 0.2)), false, false},
        {"no height", at(Params::Scale(10, 0)), false, false},
    };
    for (const auto& [name, curve, upright, rotated] : cases) {
        EXPECT_EQ(curve.IsEllipse(c_tolerance, CurveDbl::c_uprightOnly), upright) << name;
        EXPECT_EQ(curve.IsEllipse(c_tolerance, CurveDbl::c_rotatedToo), rotated) << name;
    }
}

TEST(CurveDblShapes, PointsThatAreNotFiniteMakeNoShapeAndStayOutOfBoxes)
{
    CurveDbl rectangle;
    rectangle.AddRectangle({0, 0, 20, 10});
    for (const double bad : {c_nan, c_infinity, -c_infinity}) {
        for (std::size_t index = 0; index < 13; ++index) {
            for (CurveDbl curve : {rectangle, MakeCircle()}) {
                SCOPED_TRACE(index);
                const auto page = curve.GetApproxBBox();
                curve.nodes[index].point.y = bad;
                curve.AutoSetNodeStyles();
                EXPECT_FALSE(curve.IsRectangle(c_infinity));
                EXPECT_FALSE(curve.IsEllipse(c_infinity, CurveDbl::c_rotatedToo));
                EXPECT_FALSE(curve.IsEqual(curve, c_infinity));
                EXPECT_TRUE(page.Contains(curve.GetApproxBBox()) && page.Contains(curve.GetExactBBox()));
            }
        }
        CurveDbl nowhere;
        nowhere.AddLine({bad, 1}, {1, bad});
        EXPECT_EQ(nowhere.GetApproxBBox(), (Kernel::RectT<double>{}));
        EXPECT_EQ(nowhere.GetExactBBox(Params::Scale(2, 2)), (Kernel::RectT<double>{}));
    }
}

} // namespace
