#include "colour/DeviceRgbColourSpace.h"

#include "colour/RasterFormatPicker.h"

#include <Renderer/ColourRGB.h>

namespace Quillet {

void DeviceRgbColourSpace::AddRasterFormats(RasterFormatPicker& picker, bool isExplicit) const
{
    picker.Add(Raster::Format::Rgb8, profile, isExplicit);
}

Kernel::Consolidated<Renderer::Colour> DeviceRgbColourSpace::MakeColour(const Colour& colour) const
{
    const auto channel = [&](int index) { return static_cast<float>(colour[index]); };
    return Kernel::ConsolidateObjectPostAlloc(
        Renderer::ColourRGB(Raster::PixelRgbF(channel(0), channel(1), channel(2), 1.0f)));
}

} // namespace Quillet
