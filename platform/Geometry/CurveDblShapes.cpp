#include <Geometry/CurveDbl.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace Geometry {

namespace {

using Point = Kernel::PointT<double>;

constexpr std::size_t c_lineNodeCount = 4;
constexpr std::size_t c_openSquareNodeCount = 10;
constexpr std::size_t c_fourSegmentNodeCount = 13;

/// No tolerance exceeds this part of the shape itself, else small dots would be any shape.
constexpr double c_largestDeviation = 0.25;

/// Equal steps between the points at which each arc of an ellipse is tested, its ends included.
constexpr int c_arcStepCount = 8;

double Dot(Point a, Point b)
{
    return a.x * b.x + a.y * b.y;
}

bool IsFinite(Point point)
{
    return std::isfinite(point.x) && std::isfinite(point.y);
}

/// Whether `a` is within `toleranceX` and `toleranceY` of `b`; false if that is no number.
bool IsNear(Point a, Point b, double toleranceX, double toleranceY)
{
    return std::abs(a.x - b.x) <= toleranceX && std::abs(a.y - b.y) <= toleranceY;
}

Point Interpolate(const CurveNode* segment, double t)
{
    const double s = 1 - t;
    return segment[0].point * (s * s * s) + segment[1].point * (3 * s * s * t) + segment[2].point * (3 * s * t * t) +
           segment[3].point * (t * t * t);
}

/// An ellipse by its centre, the unit vectors of its axes and the half axes.
struct Ellipse
{
    Point centre;
    Point axisU;
    Point axisV;
    double u;
    double v;

    /// Whether a point, in coordinates along the axes, is at most `tolerance` from the ellipse, to first order: the
    /// value of (x/u)² + (y/v)² - 1 over the length of its gradient. Thin ellipses are judged as well as circles.
    bool Passes(Point point, double tolerance) const
    {
        const Point unit{point.x / u, point.y / v};
        const double value = Dot(unit, unit) - 1;
        const double slope = 2 * std::hypot(unit.x / u, unit.y / v);
        return std::abs(value) <= tolerance * slope;
    }

    /// Whether a Bézier segment follows the quarter of the ellipse in which the coordinates have the signs given.
    bool HasArc(const CurveNode* segment, double signU, double signV, double tolerance) const
    {
        for (int i = 0; i <= c_arcStepCount; ++i) {
            const Point fromCentre = Interpolate(segment, double(i) / c_arcStepCount) - centre;
            const Point point{Dot(fromCentre, axisU), Dot(fromCentre, axisV)};
            const bool isInQuarter = point.x * signU >= -tolerance && point.y * signV >= -tolerance;
            if (!isInQuarter || !Passes(point, tolerance)) return false;
        }
        return true;
    }
};

} // namespace

bool CurveDbl::IsStraightSegment(std::size_t index, double tolerance) const
{
    if (index >= nodes.size() || index % 3 != 0) return false;
    const Point from = nodes[index].point;
    if (index + 1 == nodes.size()) return IsFinite(from);
    if (index + 3 >= nodes.size()) return false;

    const Point control1 = nodes[index + 1].point;
    const Point control2 = nodes[index + 2].point;
    const Point to = nodes[index + 3].point;
    if (!IsFinite(from) || !IsFinite(to)) return false;
    if (control1 == from && control2 == to) return true;

    const Point chord = to - from;
    const double length = std::hypot(chord.x, chord.y);
    const Point direction = length > 0 ? chord * (1 / length) : Point{1, 0};
    const auto isOnChord = [&](Point control) {
        if (control == from || control == to) return true;
        const Point offset = control - from;
        const double along = Dot(offset, direction);
        const double across = direction.x * offset.y - direction.y * offset.x;
        return std::abs(across) <= tolerance && along >= -tolerance && along <= length + tolerance;
    };
    return isOnChord(control1) && isOnChord(control2);
}

bool CurveDbl::IsStraightLine(double tolerance) const
{
    return !isClosed && nodes.size() == c_lineNodeCount && IsStraightSegment(0, tolerance);
}

bool CurveDbl::IsRectangle(double tolerance) const
{
    const bool hasLastSide = nodes.size() == c_fourSegmentNodeCount;
    if (!hasLastSide && !(nodes.size() == c_openSquareNodeCount && isClosed)) return false;

    const Point corner = nodes[0].point;
    const Point opposite = nodes[6].point;
    const double toleranceX = std::min(tolerance, std::abs(opposite.x - corner.x) * c_largestDeviation);
    const double toleranceY = std::min(tolerance, std::abs(opposite.y - corner.y) * c_largestDeviation);
    const Point beside{opposite.x, corner.y};
    const Point above{corner.x, opposite.y};
    const auto isCorner = [&](std::size_t index, Point expected) {
        return IsNear(nodes[index].point, expected, toleranceX, toleranceY);
    };

    if (hasLastSide && !isCorner(12, corner)) return false;
    if (!(isCorner(3, beside) && isCorner(9, above)) && !(isCorner(3, above) && isCorner(9, beside))) return false;
    for (std::size_t i = 0; i < nodes.size(); i += 3) {
        if (!IsStraightSegment(i, std::min(toleranceX, toleranceY))) return false;
    }
    return true;
}

bool CurveDbl::IsEllipse(double tolerance, bool allowRotated) const
{
    if (nodes.size() != c_fourSegmentNodeCount) return false;
    const Point centre = (nodes[0].point + nodes[6].point) * 0.5;
    const Point u = nodes[0].point - centre;
    const Point v = nodes[3].point - centre;
    const double lengthU = std::hypot(u.x, u.y);
    const double lengthV = std::hypot(v.x, v.y);
    const double shorter = std::min(lengthU, lengthV);
    if (!std::isfinite(lengthU) || !std::isfinite(lengthV) || !(shorter > 0)) return false;

    const double allowed = std::min(tolerance, shorter * c_largestDeviation);
    if (!allowRotated) {
        const bool isUpright = std::abs(u.y) <= allowed && std::abs(v.x) <= allowed;
        const bool isOnItsSide = std::abs(u.x) <= allowed && std::abs(v.y) <= allowed;
        if (!isUpright && !isOnItsSide) return false;
    }
    if (!IsNear(nodes[12].point, nodes[0].point, allowed, allowed)) return false;

    const Ellipse ellipse{centre, u * (1 / lengthU), v * (1 / lengthV), lengthU, lengthV};
    return ellipse.HasArc(&nodes[0], 1, 1, allowed) && ellipse.HasArc(&nodes[3], -1, 1, allowed) &&
           ellipse.HasArc(&nodes[6], -1, -1, allowed) && ellipse.HasArc(&nodes[9], 1, -1, allowed);
}

} // namespace Geometry
