#pragma once

#include <Geometry/AffineTransform.h>
#include <Geometry/BoundingBoxT.h>
#include <Geometry/CurveNode.h>
#include <Kernel/Countable.h>
#include <Kernel/Counted.h>
#include <Kernel/Export.h>
#include <Kernel/PointT.h>
#include <Kernel/RectT.h>

#include <cstddef>
#include <vector>

namespace Geometry {

/// A run of cubic Bézier segments.
///
/// Control points are nodes of their own: n segments have 3n + 1 nodes, node 3k lies on the curve, 3k + 1 and 3k + 2
/// control the segment that starts there. A straight line is the degenerate triple (from, to, to). A closed curve whose
/// ends are apart has an implied straight segment from the last node to the first, which has no nodes of its own. Nodes
/// behind the last whole segment are no part of the curve.
///
/// Nodes may be changed in place. Coordinates that are not finite do no harm: the shape tests answer false, and the
/// boxes leave such points out.
class QUILLET_API CurveDbl : public Kernel::Countable
{
public:
    using Point = Kernel::PointT<double>;
    using Rect = Kernel::RectT<double>;

    /// Which ellipses `IsEllipse` accepts.
    static constexpr bool c_uprightOnly = false;
    static constexpr bool c_rotatedToo = true;

    std::vector<CurveNode> nodes;
    bool isClosed = false;

    /// The first node of an empty curve, otherwise the end of a straight segment. Who knows the number of nodes to come
    /// may reserve them in `nodes`.
    void AddNode(Point point);

    /// A straight segment. A curve that ends elsewhere than at `from` is led there by another one.
    void AddLine(Point from, Point to);

    /// Four straight segments from (left, top) by way of (right, top), closed: 13 nodes on an empty curve.
    void AddRectangle(const Rect& rect);

    /// A segment from the last node to `end`; on an empty curve it starts at `control1`.
    void AddBezierCurve(Point end, Point control1, Point control2);

    void MakeClosed() { isClosed = true; }
    void SetClosed(bool closed) { isClosed = closed; }
    bool IsClosed() const { return isClosed; }

    std::size_t GetSegmentCount() const { return nodes.empty() ? 0 : (nodes.size() - 1) / 3; }

    /// Sets the style of each node on the curve: smooth where a handle meets another one or a straight segment in the
    /// same direction, within about a degree. The ends of an open curve and nodes between two straight segments are
    /// corners.
    void AutoSetNodeStyles();

    /// Whether the segment that starts at node `index` has its control points on the chord, within `tolerance` in
    /// distance and beyond either end. Three equal points are straight, and so is the closing segment, which starts
    /// at the last node; an index at which no segment starts is not.
    bool IsStraightSegment(std::size_t index, double tolerance) const;

    /// Whether the curve is exactly one straight segment, open, in any direction.
    bool IsStraightLine(double tolerance) const;

    /// Whether the curve is an upright rectangle of four straight sides, so that nodes 0 and 6 are opposite corners.
    ///
    /// Either 13 nodes, the last on the first, whatever `isClosed` says (a fill closes by itself); or 10 nodes and
    /// closed. Any start corner and either direction will do. Each node may be off its corner by `tolerance` in x and
    /// in y, yet by no more than a quarter of the width and height: thin rules are rectangles, and dots smaller than
    /// the tolerance are not unless they are square. A rectangle without area passes if its nodes are exact.
    bool IsRectangle(double tolerance) const;

    /// Whether the curve is an ellipse of four Bézier arcs between the ends of its axes: 13 nodes, the last on the
    /// first. Deviations count up to `tolerance`, yet up to a quarter of the shorter half axis at most; an ellipse
    /// without area is none. With `allowRotated` (`c_rotatedToo`), the axes may have any direction, else they are
    /// upright.
    bool IsEllipse(double tolerance, bool allowRotated) const;

    /// Whether both have equally many nodes, each equal within `tolerance`, and the same closed flag.
    bool IsEqual(const CurveDbl& other, double tolerance) const;

    /// The box of all nodes, control points included, so it may be larger than the curve. Without finite nodes, the
    /// rectangle of zeros.
    Rect GetApproxBBox() const;

    /// The box of the curve itself. Without finite nodes, the rectangle of zeros.
    Rect GetExactBBox() const;

    /// The box of the transformed curve itself; tighter than the transformed box.
    Rect GetExactBBox(const Raster::AffineTransform::Params& transform) const;

    /// Adds what these boxes are made of, for the box around several curves.
    void ExtendApproxBBox(BoundingBoxT<double>& box) const;
    void ExtendExactBBox(BoundingBoxT<double>& box, const Raster::AffineTransform::Params& transform) const;

    void Transform(const Raster::AffineTransform::Params& transform);

    Kernel::Counted<CurveDbl> Clone() const;
};

} // namespace Geometry
