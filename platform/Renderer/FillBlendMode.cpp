#include <Renderer/FillBlendMode.h>

#include <string_view>

namespace Renderer::FillBlendMode {

namespace {

struct Row
{
    BlendMode mode;
    const char* name;
};

// The old name of the normal mode comes last, so that looking up a mode finds the current one.
constexpr Row c_rows[] = {
    {Normal, "Normal"},
    {Multiply, "Multiply"},
    {Screen, "Screen"},
    {Overlay, "Overlay"},
    {Darken, "Darken"},
    {Lighten, "Lighten"},
    {ColorDodge, "ColorDodge"},
    {ColorBurn, "ColorBurn"},
    {HardLight, "HardLight"},
    {SoftLight, "SoftLight"},
    {Difference, "Difference"},
    {Exclusion, "Exclusion"},
    {Hue, "Hue"},
    {Saturation, "Saturation"},
    {Color, "Color"},
    {Luminosity, "Luminosity"},
    {Normal, "Compatible"},
};

} // namespace

BlendMode GetByName(const char* name)
{
    if (!name) return Unknown;
    for (const Row& row : c_rows) {
        if (std::string_view(row.name) == name) return row.mode;
    }
    return Unknown;
}

const char* GetName(BlendMode mode)
{
    for (const Row& row : c_rows) {
        if (row.mode == mode) return row.name;
    }
    return "";
}

} // namespace Renderer::FillBlendMode
