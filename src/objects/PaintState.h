#pragma once

#include <Geometry/AffineTransform.h>
#include <Kernel/Counted.h>
#include <Kernel/Export.h>
#include <Renderer/FillBlendMode.h>

#include <vector>

namespace Renderer {
class FillDescriptor;
class LineStyle;
class LineStyleDescriptor;
} // namespace Renderer

namespace Quillet {

class SoftMask;

/// How objects are painted: the part of a graphics state that an object takes with it.
class QUILLET_API PaintState
{
public:
    using Params = Raster::AffineTransform::Params;

    PaintState();
    PaintState(const PaintState& other);
    PaintState(PaintState&& other) noexcept;
    ~PaintState();

    const Kernel::Counted<Renderer::FillDescriptor>& GetFillDescriptor(bool isStroke) const
    {
        return isStroke ? strokeDescriptor : fillDescriptor;
    }
    double GetAlpha(bool isStroke) const { return isStroke ? strokeAlpha : fillAlpha; }

    /// Whether that paint cannot carry an alpha of its own.
    bool FillRequiresOpacity(bool isStroke) const;
    /// The paint with `transform` and `alpha` in it; the descriptor itself where neither changes anything.
    Kernel::Counted<Renderer::FillDescriptor> MakeFillDescriptorWithAlpha(bool isStroke, double alpha,
                                                                          const Params& transform) const;
    /// The line style with its width in the space that `transform` leads to.
    Kernel::Counted<Renderer::LineStyleDescriptor> MakeLineStyleDescriptor(const Params& transform) const;

    /// User space to page output space.
    Params ltCurrent;
    /// As set, in user units.
    std::vector<double> lineDash;
    double lineDashPhase = 0;
    /// Shared between states; its dashes are in multiples of its width.
    Kernel::Counted<Renderer::LineStyle> lineStyle;
    Kernel::Counted<Renderer::FillDescriptor> fillDescriptor;
    Kernel::Counted<Renderer::FillDescriptor> strokeDescriptor;
    double fillAlpha = 1;
    double strokeAlpha = 1;
    Kernel::Counted<const SoftMask> softMask;
    Renderer::FillBlendMode::BlendMode blendMode{};
};

} // namespace Quillet
