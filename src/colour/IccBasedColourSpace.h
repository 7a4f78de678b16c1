#pragma once

#include "colour/ColourSpace.h"

namespace Quillet {

class ColourSpaceFactory;
class Parser;
class Ref;
class Resources;

/// A space that is defined by a profile. Its colours are those of its alternate, which is always there.
class QUILLET_API IccBasedColourSpace : public ColourSpace
{
public:
    /// Reads the rest of the array; `parser` stands behind the name. One object a profile stream.
    static Kernel::Counted<const ColourSpace> Make(Kernel::Counted<Parser> parser,
                                                   Kernel::NonCounted<const Resources> resources,
                                                   Kernel::NonCounted<const ColourSpaceFactory> factory);

    IccBasedColourSpace(const Ref& stream, Kernel::NonCounted<const Resources> resources,
                        Kernel::NonCounted<const ColourSpaceFactory> factory);

    bool IsSpecial() const override { return false; }
    bool CanLoadAsCompressedImage() const override { return alternate->CanLoadAsCompressedImage(); }
    int GetComponentCount() const override { return alternate->GetComponentCount(); }
    int GetFormat() const override { return alternate->GetFormat(); }
    Kernel::Consolidated<Renderer::Colour> MakeColour(const Colour& colour) const override;
    std::vector<double> GetDefaultDecodeVec(int bitsPerComponent) const override;

    /// Never null.
    Kernel::Counted<const ColourSpace> alternate;
};

} // namespace Quillet
