#pragma once

#include <Geometry/AffineTransform.h>
#include <Geometry/PolyCurveDbl.h>

namespace Host {

class LongText;

/// Appends SVG path data, to a resolution of 1/10,000 point on the page, to which `toPage` leads from the path's own
/// space. It ends between two segments when the account has no more (`Quillet::Budget`).
void AppendPathData(LongText& text, const Geometry::PolyCurveDbl& path, const Raster::AffineTransform::Params& toPage);

/// The root of the transform's area factor: how much longer a length becomes, on average over the directions.
double GetScale(const Raster::AffineTransform::Params& transform);

} // namespace Host
