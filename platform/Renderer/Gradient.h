#pragma once

#include <Renderer/ColourPosition.h>

#include <vector>

namespace Renderer {

/// A ramp of colours. Interned and then immutable.
class QUILLET_API Gradient : public Kernel::Consolidatable
{
public:
    /// In ascending order of position; positions may repeat, for a hard edge.
    std::vector<ColourPosition> stops;

    explicit Gradient(std::vector<ColourPosition> colourStops);
    static Kernel::Consolidated<Gradient> Create(const std::vector<ColourPosition>& stops);

    /// Every stop is opaque.
    bool IsOpaque() const;
    /// Every alpha multiplied by `alpha`, interned.
    Kernel::Consolidated<Gradient> MakeWithAlpha(double alpha) const;

    std::size_t GetHash() const override;
    bool IsEqual(const Kernel::Consolidatable& other) const override;
};

} // namespace Renderer
