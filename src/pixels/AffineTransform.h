#pragma once

#include <Geometry/AffineTransform.h>

namespace Raster {

/// The maps of the plane live with the curves, which are a storey below; bitmaps and fills know them by this name.
namespace AffineTransform = Geometry::AffineTransform;

} // namespace Raster
