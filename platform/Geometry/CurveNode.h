#pragma once

#include <Kernel/Export.h>
#include <Kernel/PointT.h>

#include <cmath>

namespace Geometry {

/// One point of a `CurveDbl`: a point on the curve, or a control point between two of those.
struct QUILLET_API CurveNode
{
    /// What an editor keeps when a handle beside the node is dragged. Means nothing on a control point.
    enum class Style {
        Corner, ///< the handles move on their own
        Smooth, ///< the handles stay on one line
    };

    Kernel::PointT<double> point;
    Style style = Style::Corner;

    /// Whether both coordinates agree within `tolerance`; styles are not compared. Coordinates that are not finite
    /// equal nothing, themselves included.
    bool IsEqual(const CurveNode& other, double tolerance) const
    {
        return std::abs(point.x - other.point.x) <= tolerance && std::abs(point.y - other.point.y) <= tolerance;
    }
};

} // namespace Geometry
