#include <Raster/Format.h>

namespace Raster {

ColourSpace GetColourSpaceOf(Format format)
{
    switch (format) {
    case Format::Rgb8:
    case Format::Rgb16:
    case Format::RgbFloat:
        return ColourSpace::Rgb;
    case Format::Gray8:
    case Format::Gray16:
        return ColourSpace::Gray;
    case Format::Cmyk8:
        return ColourSpace::Cmyk;
    case Format::Lab16:
        return ColourSpace::Lab;
    case Format::AlphaOnly8:
    case Format::AlphaOnly16:
    case Format::None:
    case Format::AlphaOnlyFloat:
        break;
    }
    return ColourSpace::None;
}

} // namespace Raster
