#include <Geometry/CurveDbl.h>

#include <algorithm>
#include <cmath>

namespace Geometry {

namespace {

using Point = Kernel::PointT<double>;

/// Tangent of the largest angle at a smooth node. Handles of a few points that were written with two decimals are
/// turned by about half of this.
constexpr double c_smoothTolerance = 0.02;

/// Room for one segment, which is what most curves of a page of ruled lines have.
constexpr std::size_t c_firstReserve = 4;

/// How a segment leaves or reaches a node.
struct Side
{
    Point direction;
    bool isStraight = true;
};

/// The direction from a point through the first of three others that is not on it, which is the tangent there.
Point GetTangent(Point from, Point near, Point far, Point end)
{
    if (near != from) return near - from;
    if (far != from) return far - from;
    return end - from;
}

Side GetStart(const CurveNode* segment)
{
    const Point from = segment[0].point, control1 = segment[1].point, control2 = segment[2].point,
                to = segment[3].point;
    if (control1 == from && control2 == to) return {to - from, true};
    return {GetTangent(from, control1, control2, to), false};
}

Side GetEnd(const CurveNode* segment)
{
    const Point from = segment[0].point, control1 = segment[1].point, control2 = segment[2].point,
                to = segment[3].point;
    if (control1 == from && control2 == to) return {to - from, true};
    return {GetTangent(to, control2, control1, from) * -1, false};
}

CurveNode::Style GetJoinStyle(const Side& in, const Side& out)
{
    if (in.isStraight && out.isStraight) return CurveNode::Style::Corner;
    const double along = in.direction.x * out.direction.x + in.direction.y * out.direction.y;
    const double across = in.direction.x * out.direction.y - in.direction.y * out.direction.x;
    const bool isSmooth = along > 0 && std::abs(across) <= c_smoothTolerance * along;
    return isSmooth ? CurveNode::Style::Smooth : CurveNode::Style::Corner;
}

/// Calls `add` with the values that one coordinate of a Bézier segment takes where it turns back.
template <typename Add>
void AddExtrema(double p0, double p1, double p2, double p3, Add add)
{
    const auto [low, high] = std::minmax(p0, p3);
    if (p1 >= low && p1 <= high && p2 >= low && p2 <= high) return;

    // The derivative is a t² + 2 b t + c, up to a factor. Dividing by the largest of its coefficients keeps the squares
    // in range; a root at infinity or that is not a number fails the test of range.
    double d0 = p1 - p0, d1 = p2 - p1, d2 = p3 - p2;
    const double largest = std::max({std::abs(d0), std::abs(d1), std::abs(d2)});
    d0 /= largest;
    d1 /= largest;
    d2 /= largest;
    const double a = d0 - 2 * d1 + d2;
    const double b = d1 - d0;
    const double c = d0;
    const double discriminant = b * b - a * c;
    if (!(discriminant >= 0)) return;
    // Of the two ways to write each root, this takes the one in which nothing cancels.
    const double q = -(b + std::copysign(std::sqrt(discriminant), b));
    for (const double t : {q / a, c / q}) {
        if (!(t > 0 && t < 1)) continue;
        const double s = 1 - t;
        add(s * s * (s * p0 + 3 * t * p1) + t * t * (3 * s * p2 + t * p3));
    }
}

} // namespace

void CurveDbl::AddNode(Point point)
{
    if (nodes.empty()) {
        nodes.reserve(c_firstReserve);
        nodes.push_back({point});
        return;
    }
    const Point last = nodes.back().point;
    nodes.insert(nodes.end(), {{last}, {point}, {point}});
}

void CurveDbl::AddLine(Point from, Point to)
{
    if (nodes.empty() || nodes.back().point != from) AddNode(from);
    AddNode(to);
}

void CurveDbl::AddRectangle(const Rect& rect)
{
    nodes.reserve(nodes.size() + 13);
    AddNode({rect.left, rect.top});
    AddNode({rect.right, rect.top});
    AddNode({rect.right, rect.bottom});
    AddNode({rect.left, rect.bottom});
    AddNode({rect.left, rect.top});
    MakeClosed();
}

void CurveDbl::AddBezierCurve(Point end, Point control1, Point control2)
{
    if (nodes.empty()) AddNode(control1);
    nodes.insert(nodes.end(), {{control1}, {control2}, {end}});
}

void CurveDbl::AutoSetNodeStyles()
{
    const std::size_t segmentCount = GetSegmentCount();
    if (segmentCount == 0) return;
    CurveNode& first = nodes.front();
    CurveNode& last = nodes[3 * segmentCount];

    const Side start = GetStart(nodes.data());
    Side in = GetEnd(nodes.data());
    for (std::size_t i = 3; i < 3 * segmentCount; i += 3) {
        nodes[i].style = GetJoinStyle(in, GetStart(&nodes[i]));
        in = GetEnd(&nodes[i]);
    }

    if (!isClosed) {
        first.style = last.style = CurveNode::Style::Corner;
    } else if (first.point == last.point) {
        first.style = last.style = GetJoinStyle(in, start);
    } else {
        const Side closing{first.point - last.point, true};
        last.style = GetJoinStyle(in, closing);
        first.style = GetJoinStyle(closing, start);
    }
}

bool CurveDbl::IsEqual(const CurveDbl& other, double tolerance) const
{
    return isClosed == other.isClosed &&
           std::equal(nodes.begin(), nodes.end(), other.nodes.begin(), other.nodes.end(),
                      [=](const CurveNode& a, const CurveNode& b) { return a.IsEqual(b, tolerance); });
}

CurveDbl::Rect CurveDbl::GetApproxBBox() const
{
    BoundingBoxT<double> box;
    ExtendApproxBBox(box);
    return box.GetRect();
}

CurveDbl::Rect CurveDbl::GetExactBBox() const
{
    return GetExactBBox(Raster::AffineTransform::Params{});
}

CurveDbl::Rect CurveDbl::GetExactBBox(const Raster::AffineTransform::Params& transform) const
{
    BoundingBoxT<double> box;
    ExtendExactBBox(box, transform);
    return box.GetRect();
}

void CurveDbl::ExtendApproxBBox(BoundingBoxT<double>& box) const
{
    for (const CurveNode& node : nodes)
        box.Add(node.point);
}

void CurveDbl::ExtendExactBBox(BoundingBoxT<double>& box, const Raster::AffineTransform::Params& transform) const
{
    if (nodes.empty()) return;
    Point p0 = transform.ApplyTo(nodes.front().point);
    box.Add(p0);
    for (std::size_t i = 3; i < nodes.size(); i += 3) {
        const Point p1 = transform.ApplyTo(nodes[i - 2].point);
        const Point p2 = transform.ApplyTo(nodes[i - 1].point);
        const Point p3 = transform.ApplyTo(nodes[i].point);
        box.Add(p3);
        AddExtrema(p0.x, p1.x, p2.x, p3.x, [&box](double x) { box.AddX(x); });
        AddExtrema(p0.y, p1.y, p2.y, p3.y, [&box](double y) { box.AddY(y); });
        p0 = p3;
    }
}

void CurveDbl::Transform(const Raster::AffineTransform::Params& transform)
{
    for (CurveNode& node : nodes)
        node.point = transform.ApplyTo(node.point);
}

Kernel::Counted<CurveDbl> CurveDbl::Clone() const
{
    return Kernel::MakeCounted<CurveDbl>(*this);
}

} // namespace Geometry
