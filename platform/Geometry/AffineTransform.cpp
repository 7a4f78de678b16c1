#include <Geometry/AffineTransform.h>

#include <cmath>

namespace Raster::AffineTransform {

namespace {

constexpr double c_smallestDeterminant = 1e-128;
constexpr double c_smallestScale = 1e-20;
constexpr double c_angleTolerance = 1e-6;
/// A scale this much smaller than the shear beside it is what rounding leaves of none.
constexpr double c_scaleRounding = 1e-12;

bool IsFinite(const Params& map)
{
    return std::isfinite(map.a) && std::isfinite(map.b) && std::isfinite(map.c) && std::isfinite(map.d) &&
           std::isfinite(map.e) && std::isfinite(map.f) && std::isfinite(map.GetDeterminant());
}

bool HasInverse(const Params& map)
{
    return std::abs(map.GetDeterminant()) > c_smallestDeterminant;
}

double AwayFromZero(double scale)
{
    return std::abs(scale) <= c_smallestScale ? std::copysign(c_smallestScale, scale) : scale;
}

} // namespace

bool Params::IsEqual(const Params& other, double tolerance) const
{
    return std::abs(a - other.a) <= tolerance && std::abs(b - other.b) <= tolerance &&
           std::abs(c - other.c) <= tolerance && std::abs(d - other.d) <= tolerance &&
           std::abs(e - other.e) <= tolerance && std::abs(f - other.f) <= tolerance;
}

Params Params::GetInverse() const
{
    const double determinant = GetDeterminant();
    if (!(std::abs(determinant) > c_smallestDeterminant)) return {0, 0, -e, 0, 0, -f};
    const Params linear{d / determinant, -c / determinant, 0, -b / determinant, a / determinant, 0};
    return linear * Translation(-e, -f);
}

Kernel::RectT<double> Params::ApplyTo(const Kernel::RectT<double>& rect) const
{
    if (rect.IsEmpty()) return rect;
    using Point = Kernel::PointT<double>;
    using Rect = Kernel::RectT<double>;
    const Rect diagonal =
        Rect::FromCorners(ApplyTo(Point{rect.left, rect.top}), ApplyTo(Point{rect.right, rect.bottom}));
    return diagonal.Union(
        Rect::FromCorners(ApplyTo(Point{rect.right, rect.top}), ApplyTo(Point{rect.left, rect.bottom})));
}

void Params::EnsureHasInverse()
{
    const Params tiny = Scale(c_smallestScale, c_smallestScale);
    if (!IsFinite(*this)) {
        *this = tiny;
        return;
    }
    if (HasInverse(*this)) return;

    // The map as a rotation after a shear after two scales: (a, b) = sx (cos, sin) and
    // (c, d) = sy (shear cos - sin, shear sin + cos). Along the rotated axes, (c, d) has the parts sy shear and sy.
    double angle = std::atan2(b, a);
    if (a == 0 && b == 0) angle = std::atan2(-c, d);
    if (std::abs(angle) <= c_angleTolerance) angle = 0;
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    const double scaleX = a * cosine + b * sine;
    const double along = c * cosine + d * sine;
    double scaleY = d * cosine - c * sine;
    if (std::abs(scaleY) <= c_scaleRounding * std::abs(along)) scaleY = 0;
    double shear = std::abs(scaleY) <= c_smallestScale ? 0 : along / scaleY;
    if (std::abs(shear) <= c_angleTolerance) shear = 0;

    const double x = AwayFromZero(scaleX);
    const double y = AwayFromZero(scaleY);
    a = x * cosine;
    b = x * sine;
    c = y * (shear * cosine - sine);
    d = y * (shear * sine + cosine);
    // Scales at the end of the range may have overflowed on the way.
    if (!IsFinite(*this) || !HasInverse(*this)) *this = tiny;
}

} // namespace Raster::AffineTransform
