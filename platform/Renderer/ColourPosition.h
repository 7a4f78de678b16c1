#pragma once

#include <Renderer/Colour.h>

namespace Renderer {

/// One stop of a gradient.
struct ColourPosition
{
    Kernel::Consolidated<Colour> colour;
    /// 0 is the start of the gradient, 1 its end.
    double position = 0.0;
    /// Where between this stop and the next the two colours are mixed in equal parts, as a share of the way.
    double midpoint = 0.5;
    /// For the host's use; compared, and not interpreted here.
    unsigned hostData = 0;

    friend bool operator==(const ColourPosition&, const ColourPosition&) = default;
};

} // namespace Renderer
