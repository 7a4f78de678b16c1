#pragma once

namespace Quillet {

/// What a glyph is put through within its line: scales and a shear along the baseline.
struct TextTransform
{
    double x = 1;
    double y = 1;
    double shear = 0;

    friend bool operator==(const TextTransform&, const TextTransform&) = default;
};

} // namespace Quillet
