#include <Geometry/AffineTransform.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

using Raster::AffineTransform::Params;
using Point = Kernel::PointT<double>;
using Rect = Kernel::RectT<double>;

constexpr double c_infinity = std::numeric_limits<double>::infinity();
constexpr double c_nan = std::numeric_limits<double>::quiet_NaN();

TEST(AffineTransform, AppliesTheRightOperandFirst)
{
    const Params product = Params::Scale(2, 3) * Params::Translation(10, 20);
    EXPECT_EQ(product.ApplyTo(Point{1, 1}), (Point{22, 63}));
    const Params sum = Params::Scale(2, 3) + Params::Translation(10, 20);
    EXPECT_EQ(sum.ApplyTo(Point{1, 1}), (Point{12, 23}));
    EXPECT_EQ(Params::FromPdf(1, 2, 3, 4, 5, 6).ApplyTo(Point{10, 100}), (Point{315, 426}));
}

TEST(AffineTransform, InverseUndoesTheMap)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> value(-10, 10);
    for (int i = 0; i < 200; ++i) {
        const Params map{value(random), value(random), value(random), value(random), value(random), value(random)};
        if (std::abs(map.GetDeterminant()) < 0.1) continue;
        EXPECT_TRUE((map * map.GetInverse()).IsIdentity(1e-9));
        EXPECT_TRUE((map.GetInverse() * map).IsIdentity(1e-9));
    }
    EXPECT_TRUE(Params::Scale(1e-60, 1e-60).GetInverse().IsEqual(Params::Scale(1e60, 1e60), 1e46));
    // Without an area it is the negated translation.
    for (const Params& map : {Params::FromPdf(0, 0, 0, 0, 5, 6), Params::FromPdf(1, 2, 2, 4, 5, 6),
                              Params::FromPdf(1e-64, 0, 0, 1e-65, 5, 6), Params::FromPdf(c_nan, 0, 0, 1, 5, 6)})
        EXPECT_EQ(map.GetInverse(), (Params{0, 0, -5, 0, 0, -6}));
}

TEST(AffineTransform, BoxGoesAroundTheFourCorners)
{
    const Params quarterTurn = Params::FromPdf(0, 1, -1, 0, 0, 0);
    EXPECT_EQ(quarterTurn.ApplyTo(Rect{1, 2, 5, 4}), (Rect{-4, 1, -2, 5}));
    const Params shear = Params::FromPdf(1, 0, 1, 1, 0, 0);
    EXPECT_EQ(shear.ApplyTo(Rect{0, 0, 1, 2}), (Rect{0, 0, 3, 2}));
    EXPECT_TRUE(shear.ApplyTo(Rect::MakeEmpty()).IsEmpty());
}

TEST(AffineTransform, EnsureHasInverseRebuildsSingularMaps)
{
    const double root = std::sqrt(0.5);
    const std::tuple<const char*, Params, Params> cases[] = {
        {"small but regular", Params::FromPdf(1e-63, 0, 0, 1e-64, 5, 6), Params::FromPdf(1e-63, 0, 0, 1e-64, 5, 6)},
        {"no height", Params::FromPdf(3, 0, 0, 0, 7, 8), Params::FromPdf(3, 0, 0, 1e-20, 7, 8)},
        {"no width, mirrored", Params::FromPdf(-1e-130, 0, 0, 3, 7, 8), Params::FromPdf(-1e-20, 0, 0, 3, 7, 8)},
        {"no height beside a large shear", Params::FromPdf(1, 1, 1e10, 1e10, 7, 8),
         Params::FromPdf(1, 1, -root * 1e-20, root * 1e-20, 7, 8)},
        {"shear kept", Params::FromPdf(1e-130, 0, 4, 2, 7, 8), Params::FromPdf(1e-20, 0, 4, 2, 7, 8)},
        {"slight shear dropped", Params::FromPdf(1e-130, 0, 1e-6, 2, 7, 8), Params::FromPdf(1e-20, 0, 0, 2, 7, 8)},
        {"slight rotation dropped", Params::FromPdf(1, 1e-7, 0, 0, 7, 8), Params::FromPdf(1, 0, 0, 1e-20, 7, 8)},
        {"not a number", Params::FromPdf(1, 0, c_nan, 1, 7, 8), Params::Scale(1e-20, 1e-20)},
        {"infinite translation", Params::FromPdf(1, 0, 0, 1, c_infinity, 8), Params::Scale(1e-20, 1e-20)},
        {"infinite determinant", Params::FromPdf(1e200, 0, 0, 1e200, 7, 8), Params::Scale(1e-20, 1e-20)},
    };
    for (const auto& [name, map, expected] : cases) {
        Params actual = map;
        actual.EnsureHasInverse();
        // Relative to each column: a scale of 1e-20 has to be right in its own size.
        const auto isClose = [](Point a, Point b) {
            return std::hypot(a.x - b.x, a.y - b.y) <= 1e-12 * std::hypot(b.x, b.y);
        };
        EXPECT_TRUE(isClose({actual.a, actual.b}, {expected.a, expected.b}) &&
                    isClose({actual.c, actual.d}, {expected.c, expected.d}) &&
                    isClose({actual.e, actual.f}, {expected.e, expected.f}))
            << name;
    }
}

TEST(AffineTransform, EnsureHasInverseAlwaysLeavesAnInverse)
{
    // All products of two vectors are singular; the large ones are where rounding decides.
    const double values[] = {0, -0.0, 1, -1, 3, 0.1, 1e10, -1e10, 1e-10, 1e150, -1e150, 1e-70, 1e-200, 1.7e308};
    for (const double a : values) {
        for (const double b : values) {
            for (const double factor : values) {
                Params map = Params::FromPdf(a, b, a * factor, b * factor, 1, 2);
                map.EnsureHasInverse();
                EXPECT_GT(std::abs(map.GetDeterminant()), 1e-128) << a << ' ' << b << ' ' << factor;
                EXPECT_TRUE(std::isfinite(map.GetDeterminant())) << a << ' ' << b << ' ' << factor;
            }
        }
    }
}

} // namespace
