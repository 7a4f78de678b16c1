#pragma once

#include <Kernel/Consolidated.h>
#include <Kernel/Export.h>
#include <Renderer/Colour.h>

namespace Renderer {

/// What covers an area: nothing, a colour, a gradient or a bitmap. Interned and then immutable.
class QUILLET_API Fill : public Kernel::Consolidatable
{
public:
    enum class Kind { None, Solid, Gradient, Bitmap };

    virtual Kind GetKind() const = 0;

    /// Paints nothing by its nature; a transparent colour is not empty.
    bool IsEmpty() const { return GetKind() == Kind::None; }
    /// Nothing below shows through.
    virtual bool IsOpaque() const = 0;
    /// The look depends on where the fill is placed, as it does for a gradient and a bitmap.
    bool HasPlacement() const { return GetKind() == Kind::Gradient || GetKind() == Kind::Bitmap; }

    /// The one colour of a solid fill; null for the others.
    virtual Kernel::Consolidated<Colour> GetColour() const { return nullptr; }

    /// The fill with every alpha multiplied by `alpha`, interned. `alpha` is taken between 0 and 1; what is no number
    /// counts as 0. The empty fill stays as it is.
    virtual Kernel::Consolidated<Fill> MakeWithAlpha(double alpha) const = 0;
};

} // namespace Renderer
