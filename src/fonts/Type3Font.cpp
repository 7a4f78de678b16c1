#include "fonts/Type3Font.h"

#include "document/Dictionary.h"

#include <cmath>

namespace Quillet {

Type3Font::Type3Font(const Kernel::Counted<Dictionary>& dictionary) : SimpleFont(*dictionary, WithoutReading())
{
    Read(dictionary);
    // Its widths are in a glyph space of its own, where those of other fonts are in thousandths.
    Geometry::AffineTransform::Params matrix;
    if (!dictionary->GetTransform("FontMatrix", matrix)) return;
    const double scale = std::hypot(matrix.a, matrix.b) * 1000;
    if (!std::isfinite(scale) || scale == 0) return;
    missingWidth *= scale;
    for (double& width : widths)
        width *= scale;
}

} // namespace Quillet
