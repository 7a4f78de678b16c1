#pragma once

namespace Raster {

/// ICC.1:2010, 7.2.15.
enum class RenderingIntent : int {
    Perceptual = 0,
    RelativeColorimetric = 1,
    Saturation = 2,
    AbsoluteColorimetric = 3,
};

} // namespace Raster
