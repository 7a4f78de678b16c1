#include <Quillet/Page.h>
#include <Quillet/PathObject.h>

#include "objects/SoftMask.h"

#include <cmath>

namespace Quillet {

namespace {

using Params = Object::Params;
using Rect = Object::Rect;
using Point = Kernel::PointT<double>;
using Nodes = std::vector<Geometry::CurveNode>;
/// Cosine and sine.
using Turn = std::pair<double, double>;

constexpr Turn c_noTurn{1, 0};

/// A vector without more length in x or y has no direction.
constexpr double c_shortest = 1e-6;
constexpr double c_straightness = 1e-6;
/// Within this a turn changes no box.
constexpr double c_identityTolerance = 1e-6;
/// How far a vertex may be off the circle.
constexpr double c_radiusTolerance = 0.0625;

constexpr std::size_t c_nodesOfOneSegment = 4;
constexpr std::size_t c_nodesOfFourSegments = 13;
/// Polygons of fewer nodes are polygons, those of more may stand for an ellipse.
constexpr std::size_t c_mostNodesOfPolygon = 90;

bool IsShort(Point vector)
{
    return std::abs(vector.x) <= c_shortest && std::abs(vector.y) <= c_shortest;
}

Point Normalise(Point vector)
{
    const double length = std::hypot(vector.x, vector.y);
    return length <= c_shortest ? vector : Point{vector.x / length, vector.y / length};
}

/// The turn that lays the vector from node `from` to node `to` along x.
Turn GetLevellingTurn(const Nodes& nodes, std::size_t from, std::size_t to)
{
    const Point vector = nodes[to].point - nodes[from].point;
    if (IsShort(vector)) return c_noTurn;
    const Point unit = Normalise(vector);
    return {unit.x, -unit.y};
}

Turn GuessFourSegments(const Geometry::CurveDbl& curve)
{
    if (curve.IsStraightSegment(0, c_straightness)) return GetLevellingTurn(curve.nodes, 0, 3);
    // An oval is laid along y by the diameter that it starts with.
    const auto [x, y] = GetLevellingTurn(curve.nodes, 0, 6);
    return {-y, x};
}

/// Whether the vertices of a polygon are those of a circle once `toCircle` has been applied; `centre` stays in place.
bool IsRound(const Geometry::CurveDbl& curve, const Params& toCircle, Point centre)
{
    const auto getRadius = [&](std::size_t index) {
        const Point spoke = toCircle.ApplyTo(curve.nodes[index].point) - centre;
        return std::hypot(spoke.x, spoke.y);
    };
    const double radius = getRadius(0);
    for (std::size_t i = 0; i < curve.nodes.size(); i += 3) {
        const bool startsSegment = i + 3 < curve.nodes.size();
        if (startsSegment && !curve.IsStraightSegment(i, c_straightness)) return false;
        if (!(std::abs(getRadius(i) - radius) <= c_radiusTolerance)) return false;
    }
    return true;
}

/// Turns the node opposite to the first onto the x axis, then stretches the box of that to a square: an ellipse becomes
/// a circle.
bool IsPolygonalEllipse(const Geometry::CurveDbl& curve, const Rect& box, const Turn& turn)
{
    const Point centre = box.GetCentre();
    const auto [cosine, sine] = turn;
    const Params toOrigin = Params::Translation(-centre.x, -centre.y);
    const Params fromOrigin = Params::Translation(centre.x, centre.y);
    const Params rotation = fromOrigin * Params::FromPdf(cosine, sine, -sine, cosine, 0, 0) * toOrigin;

    Rect turnedBox = box;
    if (!rotation.IsIdentity(c_identityTolerance)) {
        const Point first = rotation.ApplyTo(curve.nodes.front().point);
        turnedBox = Rect::FromCorners(first, first);
        for (const Geometry::CurveNode& node : curve.nodes) {
            const Point point = rotation.ApplyTo(node.point);
            turnedBox = turnedBox.Union(Rect::FromCorners(point, point));
        }
    }
    if (!(turnedBox.GetWidth() > 0 && turnedBox.GetHeight() > 0)) return false;
    const Params stretch = Params::Scale(1, turnedBox.GetWidth() / turnedBox.GetHeight());
    return IsRound(curve, fromOrigin * stretch * toOrigin * rotation, centre);
}

} // namespace

std::pair<double, double> PathObject::GuessRotation(const Kernel::Counted<const Geometry::PolyCurveDbl>& newPath,
                                                    const Rect& box)
{
    if (newPath->curves.size() != 1) return c_noTurn;
    const Geometry::CurveDbl& curve = *newPath->curves.front();
    const std::size_t nodeCount = curve.nodes.size();
    if (nodeCount == c_nodesOfOneSegment) return GetLevellingTurn(curve.nodes, 0, 3);
    if (nodeCount == c_nodesOfFourSegments) return GuessFourSegments(curve);
    if (nodeCount <= c_mostNodesOfPolygon) return c_noTurn;

    const std::size_t segments = (nodeCount - 1) / 3;
    const Turn turn = GetLevellingTurn(curve.nodes, 0, 3 * (segments / 2));
    if (!IsPolygonalEllipse(curve, box, turn)) return c_noTurn;
    isEllipse = true;
    return turn;
}

std::pair<double, double> PathObject::GuessRotation(const Nodes& nodes, int i, int j) const
{
    const Point vector = nodes[static_cast<std::size_t>(j)].point - nodes[static_cast<std::size_t>(i)].point;
    if (IsShort(vector)) return {0, 1};
    const Point unit = Normalise(vector);
    return {-unit.y, unit.x};
}

} // namespace Quillet
