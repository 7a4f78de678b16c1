#include "colour/DeviceCmykColourSpace.h"

#include <Renderer/ColourCMYK.h>

namespace Quillet {

Kernel::Consolidated<Renderer::Colour> DeviceCmykColourSpace::MakeColour(const Colour& colour) const
{
    const auto channel = [&](int index) { return static_cast<float>(colour[index]); };
    return Kernel::ConsolidateObjectPostAlloc(
        Renderer::ColourCMYK(Raster::PixelCmykF(channel(0), channel(1), channel(2), channel(3), 1.0f)));
}

} // namespace Quillet
