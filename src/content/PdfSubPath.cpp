#include "content/PdfSubPath.h"

namespace Quillet {

void PdfSubPath::Start(Point point)
{
    points.clear();
    points.push_back(point);
    isClosed = false;
    hasSegments = false;
}

void PdfSubPath::LineTo(Point point)
{
    hasSegments = true;
    const Point last = points.back();
    if (point == last) return;
    points.insert(points.end(), {last, point, point});
}

void PdfSubPath::CurveTo(double x1, double y1, double x2, double y2, double x3, double y3)
{
    hasSegments = true;
    const Point last = points.back();
    const Point control1{x1, y1};
    const Point control2{x2, y2};
    const Point end{x3, y3};
    if (control1 == last && control2 == last && end == last) return;
    points.insert(points.end(), {control1, control2, end});
}

void PdfSubPath::Close()
{
    if (isClosed) return;
    isClosed = true;
    const Point first = points.front();
    if (points.back() != first) points.push_back(first);
}

} // namespace Quillet
