#pragma once

#include <Renderer/Fill.h>

namespace Renderer {

/// One colour everywhere.
class QUILLET_API FillSolid : public Fill
{
public:
    /// Never null.
    Kernel::Consolidated<Colour> colour;

    explicit FillSolid(const Kernel::Consolidated<Colour>& solidColour);

    Kind GetKind() const override { return Kind::Solid; }
    bool IsOpaque() const override { return colour->GetAlpha() >= 1; }
    Kernel::Consolidated<Colour> GetColour() const override { return colour; }
    Kernel::Consolidated<Fill> MakeWithAlpha(double alpha) const override;

    std::size_t GetHash() const override;
    bool IsEqual(const Kernel::Consolidatable& other) const override;
};

} // namespace Renderer
