#pragma once

#include <Renderer/Colour.h>

#include <string_view>
#include <vector>

namespace Host {

/// A colour as scripts read it: its model by name, and its components in that model.
struct ColourValues
{
    explicit ColourValues(const Renderer::Colour& colour);

    /// "gray", "rgb", "cmyk", "lab", "named" or "registration".
    std::string_view model;
    /// 0 to 1 each; L from 0 to 100 and a, b in their own units for Lab; of a named colour, its tint.
    std::vector<double> values;
};

} // namespace Host
