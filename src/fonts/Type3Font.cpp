#include "fonts/Type3Font.h"

#include "document/Dictionary.h"

#include <algorithm>
#include <cmath>

namespace Quillet {

Type3Font::Type3Font(const Kernel::Counted<Dictionary>& dictionary) : SimpleFont(*dictionary, WithoutReading())
{
    Read(dictionary);
    // Its widths are in a glyph space of its own, where those of other fonts are in thousandths.
    std::vector<double> values;
    dictionary->GetRealVec("FontMatrix", values);
    if (values.size() != 6) return;
    const auto matrix = Raster::AffineTransform::Params::FromPdf(std::span(values).first<6>());
    const double scale = std::hypot(matrix.a, matrix.b) * 1000;
    if (!std::isfinite(scale) || scale == 0) return;
    isMirrored = matrix.GetDeterminant() < 0;
    missingWidth *= scale;
    for (double& width : widths)
        width *= scale;
    ReadSizeScale(*dictionary, std::hypot(matrix.c, matrix.d));
}

void Type3Font::ReadSizeScale(Dictionary& dictionary, double unitsToText)
{
    // The size says nothing of how high the glyphs are, unless the units are the usual ones.
    constexpr double c_usualUnits = 0.001;
    if (unitsToText > c_usualUnits / 2 && unitsToText < c_usualUnits * 2) return;
    Kernel::RectT<double> box;
    double height = dictionary.GetRect("FontBBox", box) ? box.GetHeight() * unitsToText : 0;
    // Boxes are often left empty, or made up.
    constexpr double c_monospacedWidth = 0.6;
    if (!widths.empty()) {
        const auto [narrowest, widest] = std::ranges::minmax(widths);
        const double guess = widest / 1000 / (narrowest == widest ? c_monospacedWidth : 1);
        if (!(height > guess / 4)) height = guess;
    }
    if (height > 0 && std::isfinite(height)) sizeScale = height;
}

} // namespace Quillet
