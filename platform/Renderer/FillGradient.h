#pragma once

#include <Renderer/Fill.h>
#include <Renderer/Gradient.h>

namespace Renderer {

/// A ramp of colours along a line or outward from a point. Its place comes with the descriptor: a linear one runs from
/// left to right of the unit square, an elliptical one from the centre to the edge of the unit circle.
class QUILLET_API FillGradient : public Fill
{
public:
    enum FillGradientType : int { Linear = 0, Elliptical = 1 };

    FillGradientType type;
    /// Null paints nothing.
    Kernel::Consolidated<Gradient> gradient;

    FillGradient(FillGradientType gradientType, const Kernel::Consolidated<Gradient>& ramp);

    Kind GetKind() const override { return gradient ? Kind::Gradient : Kind::None; }
    bool IsOpaque() const override { return gradient && gradient->IsOpaque(); }
    Kernel::Consolidated<Fill> MakeWithAlpha(double alpha) const override;

    std::size_t GetHash() const override;
    bool IsEqual(const Kernel::Consolidatable& other) const override;
};

} // namespace Renderer
