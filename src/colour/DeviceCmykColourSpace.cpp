#include "colour/DeviceCmykColourSpace.h"

#include "colour/RasterFormatPicker.h"

#include <Renderer/ColourCMYK.h>

namespace Quillet {

void DeviceCmykColourSpace::AddRasterFormats(RasterFormatPicker& picker, bool isExplicit) const
{
    picker.Add(Raster::Format::Cmyk8, profile, isExplicit);
}

Kernel::Consolidated<Renderer::Colour> DeviceCmykColourSpace::MakeColour(const Colour& colour) const
{
    const auto channel = [&](int index) { return static_cast<float>(colour[index]); };
    return Kernel::ConsolidateObjectPostAlloc(
        Renderer::ColourCMYK(Raster::PixelCmykF(channel(0), channel(1), channel(2), channel(3), 1.0f)));
}

} // namespace Quillet
