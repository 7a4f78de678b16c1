#pragma once

#include <Kernel/Export.h>

/// How a paint mixes with what lies below it (ISO 32000-2, 11.3.5).
namespace Renderer::FillBlendMode {

enum BlendMode : int {
    Normal = 0,
    Multiply,
    Screen,
    Overlay,
    Darken,
    Lighten,
    ColorDodge,
    ColorBurn,
    HardLight,
    SoftLight,
    Difference,
    Exclusion,
    Hue,
    Saturation,
    Color,
    Luminosity,
    /// The answer for a name that is none of these; no paint has this mode.
    Unknown = 38,
};

/// The mode of a PDF name, written exactly as PDF has it; "Compatible" is `Normal`. Null and other texts give
/// `Unknown`.
QUILLET_API BlendMode GetByName(const char* name);

/// PDF's name of the mode; an empty text for a value that is no mode. The text is static.
QUILLET_API const char* GetName(BlendMode mode);

} // namespace Renderer::FillBlendMode
