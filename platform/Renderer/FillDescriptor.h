#pragma once

#include <Kernel/Counted.h>
#include <Kernel/Export.h>
#include <Renderer/Fill.h>
#include <Renderer/FillBlendMode.h>
#include <Geometry/AffineTransform.h>

#include <cstddef>

namespace Renderer {

/// A fill as an object uses it: placed, and with its blend mode. Immutable, so that objects share it.
class QUILLET_API FillDescriptor : public Kernel::Countable
{
public:
    /// Null counts as empty.
    const Kernel::Consolidated<Fill> fill;
    /// `transform` places the fill; else the fill is not placed and `transform` is the identity.
    const bool hasTransform;
    /// From the fill's own space (unit square, unit circle, bitmap pixels) to the space of the object.
    const Raster::AffineTransform::Params transform;
    const FillBlendMode::BlendMode blendMode;
    /// A host that resizes the object resizes the fill with it.
    const bool isScaledWithObject;

    FillDescriptor(Kernel::Consolidated<Fill> usedFill, FillBlendMode::BlendMode mode);
    FillDescriptor(Kernel::Consolidated<Fill> usedFill, bool isPlaced, const Raster::AffineTransform::Params& placement,
                   FillBlendMode::BlendMode mode, bool scalesWithObject);
    /// `other` with `outer` applied after its own transform. A fill without a placement stays without.
    FillDescriptor(const FillDescriptor& other, const Raster::AffineTransform::Params& outer);
    FillDescriptor(const FillDescriptor& other) = default;

    /// The descriptor of the empty fill; always the same object.
    static Kernel::Counted<FillDescriptor> CreateNone();

    /// No fill, or the empty one.
    bool IsEmpty() const { return !fill || fill->IsEmpty(); }

    /// Equal in look: the transform of a fill that no placement changes does not count.
    bool IsEqual(const FillDescriptor& other) const;
    std::size_t GetHash() const;
};

} // namespace Renderer
