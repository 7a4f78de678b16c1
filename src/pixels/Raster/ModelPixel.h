#pragma once

#include <Raster/ColourSpace.h>

#include <array>

namespace Raster {

/// One colour in its own model, for conversions whose model is known at run time only.
struct ModelPixel
{
    ColourSpace model = ColourSpace::None;
    /// As many as the model has, 0 to 1; Lab in its own units, L from 0 to 100.
    std::array<double, 4> components{};
    float alpha = 1.0f;
};

} // namespace Raster
