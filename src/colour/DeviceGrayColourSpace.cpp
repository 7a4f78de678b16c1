#include "colour/DeviceGrayColourSpace.h"

#include "colour/RasterFormatPicker.h"

#include <Renderer/ColourGrayscale.h>

namespace Quillet {

void DeviceGrayColourSpace::AddRasterFormats(RasterFormatPicker& picker, bool isExplicit) const
{
    picker.Add(Raster::Format::Gray8, profile, isExplicit);
}

Kernel::Consolidated<Renderer::Colour> DeviceGrayColourSpace::MakeColour(const Colour& colour) const
{
    const auto channel = [&](int index) { return static_cast<float>(colour[index]); };
    return Kernel::ConsolidateObjectPostAlloc(Renderer::ColourGrayscale(Raster::PixelGrayF(channel(0), 1.0f)));
}

} // namespace Quillet
