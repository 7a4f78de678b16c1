#pragma once

#include <Geometry/AffineTransform.h>
#include <Geometry/PolyCurveDbl.h>

#include <string>

namespace Host {

/// SVG path data, to a resolution of 1/10,000 point on the page, to which `toPage` leads from the path's own space.
std::string MakePathData(const Geometry::PolyCurveDbl& path, const Geometry::AffineTransform::Params& toPage);

/// The root of the transform's area factor: how much longer a length becomes, on average over the directions.
double GetScale(const Geometry::AffineTransform::Params& transform);

} // namespace Host
