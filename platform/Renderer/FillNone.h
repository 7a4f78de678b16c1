#pragma once

#include <Renderer/Fill.h>

namespace Renderer {

/// The empty fill.
class QUILLET_API FillNone : public Fill
{
public:
    /// The one object.
    static Kernel::Consolidated<Fill> Get();

    Kind GetKind() const override { return Kind::None; }
    bool IsOpaque() const override { return false; }
    Kernel::Consolidated<Fill> MakeWithAlpha(double alpha) const override;

    std::size_t GetHash() const override { return 0; }
    bool IsEqual(const Kernel::Consolidatable&) const override { return true; }
};

} // namespace Renderer
