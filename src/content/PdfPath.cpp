#include "content/PdfPath.h"

namespace Quillet {

namespace {

using Geometry::CurveDbl;
using Kernel::Counted;

/// Long enough that a line has a direction, too short to be seen beside its caps.
constexpr double c_dotLength = 1e-5;
/// Keeps the fill of a closed path without extent visible as a speck.
constexpr double c_speckSize = 0.001;

/// The curve of a subpath that is a single point; null if nothing is to be seen of it.
Counted<CurveDbl> MakePointCurve(const PdfSubPath& subPath, Fill::Type type, bool isRoundCap)
{
    if (subPath.points.empty()) return nullptr;
    const PdfSubPath::Point point = subPath.points.front();
    if (type == Fill::Stroke) {
        if (!isRoundCap) return nullptr;
        auto dot = Kernel::MakeCounted<CurveDbl>();
        dot->AddLine(point, {point.x + c_dotLength, point.y});
        return dot;
    }
    if (!subPath.isClosed && !subPath.hasSegments) return nullptr;
    auto speck = Kernel::MakeCounted<CurveDbl>();
    speck->AddRectangle({point.x, point.y, point.x + c_speckSize, point.y + c_speckSize});
    return speck;
}

Counted<CurveDbl> MakeCurve(const PdfSubPath& subPath)
{
    const std::vector<PdfSubPath::Point>& points = subPath.points;
    auto curve = Kernel::MakeCounted<CurveDbl>();
    curve->nodes.reserve(points.size() + 2);
    curve->AddNode(points.front());
    std::size_t next = 1;
    for (; next + 2 < points.size(); next += 3) {
        curve->AddBezierCurve(points[next + 2], points[next], points[next + 1]);
    }
    if (next < points.size()) curve->AddNode(points[next]);
    return curve;
}

} // namespace

PdfSubPath& PdfPath::StartSubPath(double x, double y)
{
    if (count == 0 || GetBack().points.size() > 1) {
        if (subPaths.size() == count) subPaths.resize(count + 1);
        ++count;
    }
    GetBack().Start({x, y});
    return GetBack();
}

bool PdfPath::CloseBackSubPath()
{
    if (count == 0) return false;
    GetBack().Close();
    return true;
}

Counted<Geometry::PolyCurveDbl> PdfPath::MakePath(Fill::Type type, bool isRoundCap) const
{
    if (type == Fill::None || count == 0) return nullptr;
    auto path = Kernel::MakeCounted<Geometry::PolyCurveDbl>();
    path->curves.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const PdfSubPath& subPath = subPaths[i];
        const bool isPoint = subPath.points.size() <= 1;
        if (isPoint && type == Fill::FillAndStroke) return nullptr;
        Counted<CurveDbl> curve = isPoint ? MakePointCurve(subPath, type, isRoundCap) : MakeCurve(subPath);
        if (!curve) continue;
        if (subPath.isClosed) curve->MakeClosed();
        curve->AutoSetNodeStyles();
        path->AddCurve(std::move(curve));
    }
    return path->IsEmpty() ? nullptr : path;
}

} // namespace Quillet
