#include <Geometry/PolyCurveDbl.h>

#include <algorithm>

namespace Geometry {

void PolyCurveDbl::AddCurve(Kernel::Counted<CurveDbl> curve)
{
    if (curve) curves.push_back(std::move(curve));
}

void PolyCurveDbl::AddRectangle(const Rect& rect)
{
    auto curve = Kernel::MakeCounted<CurveDbl>();
    curve->AddRectangle(rect);
    curves.push_back(std::move(curve));
}

bool PolyCurveDbl::IsRectangle(double tolerance) const
{
    return curves.size() == 1 && curves.front()->IsRectangle(tolerance);
}

bool PolyCurveDbl::IsEqual(const PolyCurveDbl& other, double tolerance) const
{
    return std::equal(curves.begin(), curves.end(), other.curves.begin(), other.curves.end(),
                      [=](const auto& a, const auto& b) { return a->IsEqual(*b, tolerance); });
}

bool PolyCurveDbl::GetAllCurvesClosed() const
{
    return std::all_of(curves.begin(), curves.end(), [](const auto& curve) { return curve->IsClosed(); });
}

std::vector<bool> PolyCurveDbl::EnumerateCurvesClosed() const
{
    std::vector<bool> flags;
    flags.reserve(curves.size());
    for (const auto& curve : curves)
        flags.push_back(curve->IsClosed());
    return flags;
}

PolyCurveDbl::Rect PolyCurveDbl::GetApproxBBox() const
{
    BoundingBoxT<double> box;
    for (const auto& curve : curves)
        curve->ExtendApproxBBox(box);
    return box.GetRect();
}

PolyCurveDbl::Rect PolyCurveDbl::GetExactBBox() const
{
    return GetExactBBox(Raster::AffineTransform::Params{});
}

PolyCurveDbl::Rect PolyCurveDbl::GetExactBBox(const Raster::AffineTransform::Params& transform) const
{
    BoundingBoxT<double> box;
    for (const auto& curve : curves)
        curve->ExtendExactBBox(box, transform);
    return box.GetRect();
}

void PolyCurveDbl::Transform(const Raster::AffineTransform::Params& transform)
{
    for (const auto& curve : curves)
        curve->Transform(transform);
}

Kernel::Counted<PolyCurveDbl> PolyCurveDbl::Clone() const
{
    auto clone = Kernel::MakeCounted<PolyCurveDbl>();
    clone->curves.reserve(curves.size());
    for (const auto& curve : curves)
        clone->curves.push_back(curve->Clone());
    return clone;
}

} // namespace Geometry
