#include <Geometry/PolyCurveDbl.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

namespace {

using Geometry::BoundingBoxT;
using Geometry::CurveDbl;
using Geometry::CurveNode;
using Geometry::PolyCurveDbl;
using Raster::AffineTransform::Params;
using Point = Kernel::PointT<double>;
using Rect = Kernel::RectT<double>;

constexpr double c_nan = std::numeric_limits<double>::quiet_NaN();

std::vector<Point> GetPoints(const CurveDbl& curve)
{
    std::vector<Point> points;
    for (const CurveNode& node : curve.nodes)
        points.push_back(node.point);
    return points;
}

/// The box of many points of the transformed curve.
Rect GetSampledBox(const CurveDbl& curve, const Params& transform, int sampleCount)
{
    BoundingBoxT<double> box;
    for (std::size_t i = 0; i + 3 < curve.nodes.size(); i += 3) {
        const auto at = [&](std::size_t j) { return curve.nodes[i + j].point; };
        for (int k = 0; k <= sampleCount; ++k) {
            const double t = double(k) / sampleCount, s = 1 - t;
            const Point point = at(0) * (s * s * s) + at(1) * (3 * s * s * t) + at(2) * (3 * s * t * t);
            box.Add(transform.ApplyTo(point + at(3) * (t * t * t)));
        }
    }
    return box.GetRect();
}

TEST(CurveDbl, BuildsThreeNodesASegment)
{
    const Point a{0, 0}, b{1, 0}, c{2, 3}, d{4, 5};
    CurveDbl nodes;
    nodes.AddNode(a);
    nodes.AddNode(b);
    nodes.AddBezierCurve(d, b, c);
    EXPECT_EQ(GetPoints(nodes), (std::vector<Point>{a, a, b, b, b, c, d}));

    CurveDbl lines;
    lines.AddLine(a, b);
    lines.AddLine(b, c);
    lines.AddLine(d, a);
    EXPECT_EQ(GetPoints(lines), (std::vector<Point>{a, a, b, b, b, c, c, c, d, d, d, a, a}));

    CurveDbl headless;
    headless.AddBezierCurve(c, a, b);
    EXPECT_EQ(GetPoints(headless), (std::vector<Point>{a, a, b, c}));
}

TEST(CurveDbl, StylesFollowTheTangents)
{
    // The points, and the style of each node: corner or smooth.
    const std::tuple<const char*, std::vector<Point>, bool, std::string> rows[] = {
        {"lines", {{0, 0}, {0, 0}, {9, 0}, {9, 0}, {9, 0}, {9, 9}, {9, 9}}, false, "ccc"},
        {"turn back", {{0, 0}, {5, 0}, {8, 0}, {9, 0}, {8, 0}, {5, 0}, {0, 1}}, false, "ccc"},
        {"handles on their nodes leave the tangent to the others",
         {{0, 0}, {5, 0}, {10, 0}, {10, 0}, {10, 0}, {20, 0}, {20, 10}},
         false,
         "csc"},
        {"no length, no direction", {{0, 0}, {0, 0}, {0, 0}, {0, 0}, {10, 0}, {20, 0}, {20, 10}}, false, "ccc"},
        {"open drop", {{0, 0}, {10, 1}, {-10, -1}, {0, 0}}, false, "cc"},
        {"closed drop", {{0, 0}, {10, 1}, {-10, -1}, {0, 0}}, true, "ss"},
        {"no nodes for the closing segment",
         {{10, 0}, {20, 0}, {20, 10}, {10, 10}, {10, 10}, {0, 10}, {0, 10}, {-10, 10}, {-10, 0}, {0, 0}},
         true,
         "ssss"},
        // 0.02 is the tangent of the largest angle.
        {"slight bend", {{0, 0}, {0, 5}, {10, 0}, {20, 0}, {30, 0.19}, {40, 5}, {40, 0}}, false, "csc"},
        {"bend", {{0, 0}, {0, 5}, {10, 0}, {20, 0}, {30, 0.21}, {40, 5}, {40, 0}}, false, "ccc"},
    };
    for (const auto& [name, points, isClosed, expected] : rows) {
        CurveDbl curve;
        for (const Point point : points)
            curve.nodes.push_back({point, {}});
        if (isClosed) curve.MakeClosed();
        curve.AutoSetNodeStyles();
        std::string styles;
        for (std::size_t i = 0; i < curve.nodes.size(); i += 3)
            styles += curve.nodes[i].style == CurveNode::Style::Smooth ? 's' : 'c';
        EXPECT_EQ(styles, expected) << name;
    }
}

TEST(CurveDbl, ExactBoxIsThatOfASampledTwin)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> value(-100, 100);
    std::uniform_int_distribution<int> whole(-2, 2); // often leaves the quadratic or linear terms at zero
    constexpr int c_sampleCount = 4000;
    for (int i = 0; i < 150; ++i) {
        const auto next = [&] { return i % 2 ? value(random) : whole(random); };
        const auto nextPoint = [&] {
            const double x = next();
            return Point{x, next()};
        };
        CurveDbl curve;
        curve.AddNode(nextPoint());
        for (int k = 0; k < 3; ++k) {
            const Point end = nextPoint(), control1 = nextPoint();
            curve.AddBezierCurve(end, control1, nextPoint());
        }
        Params transform;
        if (i % 3 == 1) transform = {next(), next(), next(), next(), next(), next()};

        const Rect exact = curve.GetExactBBox(transform);
        const Rect sampled = GetSampledBox(curve, transform, c_sampleCount);
        const double size = 1 + std::max(sampled.GetWidth(), sampled.GetHeight());
        // Samples miss an extreme by at most the curvature over half a step.
        EXPECT_TRUE(sampled.Inflated(size * 1e-6).Contains(exact)) << "curve " << i;
        EXPECT_TRUE(exact.Inflated(size * 1e-12).Contains(sampled)) << "curve " << i;
        EXPECT_EQ(curve.GetExactBBox(), curve.GetExactBBox(Params{}));
    }
}

TEST(CurveDbl, BoxesOfSpecialCurves)
{
    CurveDbl arch;
    arch.AddNode({0, 0});
    arch.AddBezierCurve({4, 0}, {0, 4}, {4, 4});
    EXPECT_EQ(arch.GetApproxBBox(), (Rect{0, 0, 4, 4}));
    for (const double scale : {1e-300, 1e-160, 1e160, 1e300}) {
        const Rect box = arch.GetExactBBox(Params::Scale(scale, scale));
        EXPECT_NEAR(box.bottom / scale, 3, 1e-9) << scale;
    }

    EXPECT_EQ(CurveDbl{}.GetExactBBox(), Rect{});
}

TEST(CurveDbl, NodesBehindTheLastSegmentDoNoHarm)
{
    for (std::size_t count = 0; count <= 13; ++count) {
        CurveDbl curve;
        curve.AddRectangle({0, 0, 1, 1});
        curve.nodes.resize(count);
        curve.AutoSetNodeStyles();
        const Rect box = curve.GetExactBBox(Params::Translation(0, 0));
        EXPECT_TRUE((Rect{0, 0, 1, 1}.Contains(box)));
        for (std::size_t i = 0; i < 15; ++i) {
            const bool startsSegment = i % 3 == 0 && i + 3 < count;
            const bool isEnd = i % 3 == 0 && i + 1 == count;
            EXPECT_EQ(curve.IsStraightSegment(i, 1e-6), startsSegment || isEnd) << count << ' ' << i;
        }
        EXPECT_EQ(curve.IsRectangle(1e-6), count == 10 || count == 13);
    }
}

TEST(PolyCurveDbl, CopiesShareAndClonesDoNot)
{
    PolyCurveDbl path(Rect{0, 0, 2, 1});
    path.AddCurve(nullptr);
    ASSERT_EQ(path.curves.size(), 1U);

    const PolyCurveDbl copy = path;
    EXPECT_EQ(copy.curves.front(), path.curves.front());
    const auto clone = path.Clone();
    EXPECT_NE(clone->curves.front(), path.curves.front());
    path.Transform(Params::Translation(10, 0));
    EXPECT_EQ(copy.GetApproxBBox(), (Rect{10, 0, 12, 1}));
    EXPECT_EQ(clone->GetApproxBBox(), (Rect{0, 0, 2, 1}));
}

TEST(PolyCurveDbl, EqualWithinToleranceInEveryRespect)
{
    const PolyCurveDbl path(Rect{0, 0, 2, 1});
    const auto isEqualAfter = [&](auto change) {
        const auto other = path.Clone();
        change(*other);
        return path.IsEqual(*other, 0.125);
    };
    EXPECT_TRUE(isEqualAfter([](PolyCurveDbl& p) { p.curves[0]->nodes[12].point.y += 0.125; }));
    EXPECT_TRUE(isEqualAfter([](PolyCurveDbl& p) { p.curves[0]->nodes[3].style = CurveNode::Style::Smooth; }));
    EXPECT_FALSE(isEqualAfter([](PolyCurveDbl& p) { p.curves[0]->nodes[12].point.y += 0.126; }));
    EXPECT_FALSE(isEqualAfter([](PolyCurveDbl& p) { p.curves[0]->nodes.pop_back(); }));
    EXPECT_FALSE(isEqualAfter([](PolyCurveDbl& p) { p.curves[0]->SetClosed(false); }));
    EXPECT_FALSE(isEqualAfter([](PolyCurveDbl& p) { p.AddRectangle({0, 0, 2, 1}); }));
}

TEST(PolyCurveDbl, SpeaksForAllItsCurves)
{
    PolyCurveDbl path;
    path.AddRectangle({10, 10, 12, 11});
    auto nowhere = Kernel::MakeCounted<CurveDbl>();
    nowhere->AddNode({c_nan, 0});
    path.AddCurve(nowhere);
    EXPECT_EQ(path.GetApproxBBox(), (Rect{10, 10, 12, 11})) << "a curve without a place must not add the origin";
    path.AddRectangle({5, 6, 7, 8});
    EXPECT_EQ(path.GetExactBBox(), (Rect{5, 6, 12, 11}));
    EXPECT_EQ(path.EnumerateCurvesClosed(), (std::vector<bool>{true, false, true}));
}

} // namespace
