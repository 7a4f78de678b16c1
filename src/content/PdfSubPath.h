#pragma once

#include <Kernel/Export.h>
#include <Kernel/PointT.h>

#include <vector>

namespace Quillet {

/// A run of cubic Bézier triples behind a first point. A straight line is the triple (previous point, end, end).
///
/// A close that has to return to the start puts one more point at the end, outside any triple.
class QUILLET_API PdfSubPath
{
public:
    using Point = Kernel::PointT<double>;

    /// Empties the subpath, keeping its storage, and starts it at `point`.
    void Start(Point point);
    void LineTo(double x, double y) { LineTo(Point{x, y}); }
    void LineTo(Point point);
    void CurveTo(double x1, double y1, double x2, double y2, double x3, double y3);
    void Close();

    std::vector<Point> points;
    bool isClosed = false;
    /// Set by any segment, even one that added nothing.
    bool hasSegments = false;
};

} // namespace Quillet
