#include "colour/DeviceRgbColourSpace.h"

#include <Renderer/ColourRGB.h>

namespace Quillet {

Kernel::Consolidated<Renderer::Colour> DeviceRgbColourSpace::MakeColour(const Colour& colour) const
{
    const auto channel = [&](int index) { return static_cast<float>(colour[index]); };
    return Kernel::ConsolidateObjectPostAlloc(
        Renderer::ColourRGB(Raster::PixelRgbF(channel(0), channel(1), channel(2), 1.0f)));
}

} // namespace Quillet
