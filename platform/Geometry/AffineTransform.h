#pragma once

#include <Kernel/Export.h>
#include <Kernel/PointT.h>
#include <Kernel/RectT.h>

#include <span>

namespace Raster::AffineTransform {

/// An affine map of the plane: x' = a x + c y + e, y' = b x + d y + f.
struct QUILLET_API Params
{
    double a = 1;
    double c = 0;
    double e = 0;
    double b = 0;
    double d = 1;
    double f = 0;

    /// From the order in which PDF writes a matrix.
    static constexpr Params FromPdf(double a, double b, double c, double d, double e, double f)
    {
        return {a, c, e, b, d, f};
    }
    static constexpr Params FromPdf(std::span<const double, 6> values)
    {
        return FromPdf(values[0], values[1], values[2], values[3], values[4], values[5]);
    }
    static constexpr Params Translation(double x, double y) { return {1, 0, x, 0, 1, y}; }
    static constexpr Params Scale(double x, double y) { return {x, 0, 0, 0, y, 0}; }

    friend bool operator==(const Params&, const Params&) = default;

    /// `outer * inner` applies `inner` first.
    friend constexpr Params operator*(const Params& outer, const Params& inner)
    {
        return {outer.a * inner.a + outer.c * inner.b,           outer.a * inner.c + outer.c * inner.d,
                outer.a * inner.e + outer.c * inner.f + outer.e, outer.b * inner.a + outer.d * inner.b,
                outer.b * inner.c + outer.d * inner.d,           outer.b * inner.e + outer.d * inner.f + outer.f};
    }

    /// `first + then` applies `first` first, as transforms are added one after the other.
    friend constexpr Params operator+(const Params& first, const Params& then) { return then * first; }

    constexpr double GetDeterminant() const { return a * d - b * c; }

    /// All six values within `tolerance`.
    bool IsEqual(const Params& other, double tolerance) const;
    bool IsIdentity(double tolerance) const { return IsEqual(Params{}, tolerance); }

    /// The inverse map. A map whose absolute determinant is at most 1e-128 has none: the answer is then a zero linear
    /// part with the translation (-e, -f).
    Params GetInverse() const;

    constexpr Kernel::PointT<double> ApplyTo(Kernel::PointT<double> point) const
    {
        return {a * point.x + c * point.y + e, b * point.x + d * point.y + f};
    }

    /// The upright box around the four transformed corners; the empty rectangle stays empty.
    Kernel::RectT<double> ApplyTo(const Kernel::RectT<double>& rect) const;

    /// Replaces a map without an inverse by a tiny one that has one, so that later inversions never fail.
    ///
    /// A value or determinant that is not finite gives 1e-20 on the diagonal. A determinant of at most 1e-128 keeps the
    /// translation, rotation and shear; a scale of at most 1e-20 becomes 1e-20 with its sign.
    void EnsureHasInverse();
};

} // namespace Raster::AffineTransform
