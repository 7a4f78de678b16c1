#pragma once

#include <Kernel/Export.h>
#include <Raster/ColourSpace.h>

namespace Raster {

/// How the pixels of a bitmap are held. The numbers are part of the interface to hosts.
enum class Format : int {
    Rgb8 = 0,
    Rgb16 = 1,
    Gray8 = 2,
    Gray16 = 3,
    Cmyk8 = 4,
    Lab16 = 5,
    AlphaOnly8 = 6,
    AlphaOnly16 = 7,
    /// Nothing chosen yet.
    None = 8,
    /// 32-bit float; colours may leave 0 to 1.
    RgbFloat = 9,
    AlphaOnlyFloat = 10,
};

/// The model of the colour channels; `None` for alpha alone and for numbers that are no format.
QUILLET_API ColourSpace GetColourSpaceOf(Format format);

} // namespace Raster
