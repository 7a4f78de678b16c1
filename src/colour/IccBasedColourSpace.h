#pragma once

#include "colour/ColourSpace.h"

namespace Quillet {

class ColourSpaceFactory;
class Dictionary;
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

    /// Reads the profile stream `dictionary`. Raises `UnimplementedColourProfile` and gives null for bytes that are no
    /// profile.
    static Kernel::Consolidated<Raster::ICCProfile> ReadProfile(Kernel::Counted<Dictionary> dictionary);

    bool IsSpecial() const override { return false; }
    bool CanLoadAsCompressedImage() const override { return alternate->CanLoadAsCompressedImage(); }
    int GetComponentCount() const override { return alternate->GetComponentCount(); }
    int GetFormat() const override { return alternate->GetFormat(); }
    void AddRasterFormats(RasterFormatPicker& picker, bool isExplicit) const override;
    Kernel::Consolidated<Raster::ICCProfile> GetICCProfile() const override { return profile; }
    Kernel::Consolidated<Renderer::Colour> MakeColour(const Colour& colour) const override;
    std::vector<double> GetDefaultDecodeVec(int bitsPerComponent) const override;

    /// Never null.
    Kernel::Counted<const ColourSpace> alternate;
    /// May be null. For images: the colours are device colours without it.
    Kernel::Consolidated<Raster::ICCProfile> profile;
};

} // namespace Quillet
