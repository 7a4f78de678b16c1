#pragma once

namespace Raster {

/// The colour model of a colour, a pixel or a profile. The numbers are part of the interface to hosts.
enum class ColourSpace : int {
    None = 0,
    Gray = 1,
    Rgb = 2,
    Cmyk = 3,
    Lab = 4,
    /// Profiles of other spaces with three channels, such as HSV or YCbCr; their pixels are held as RGB.
    OtherRgb = 5,
};

constexpr int c_colourSpaceCount = 6;

} // namespace Raster
