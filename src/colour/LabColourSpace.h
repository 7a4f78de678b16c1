#pragma once

#include "colour/ColourSpace.h"

namespace Quillet {

class ColourSpaceFactory;
class Parser;
class Ref;
class Resources;

/// CIE L*a*b* (ISO 32000-2, 8.6.5.4).
class QUILLET_API LabColourSpace : public ColourSpace
{
public:
    /// Reads the rest of the array; `parser` stands behind the name. One object a dictionary.
    static Kernel::Counted<const ColourSpace> Make(Kernel::Counted<Parser> parser,
                                                   Kernel::NonCounted<const Resources> resources,
                                                   Kernel::NonCounted<const ColourSpaceFactory> factory);

    /// Without a white point the space has neither a profile nor a range.
    explicit LabColourSpace(const Ref& parameters);

    bool IsSpecial() const override { return false; }
    int GetComponentCount() const override { return 3; }
    int GetFormat() const override { return 4; }
    void AddRasterFormats(RasterFormatPicker& picker, bool isExplicit) const override;
    Kernel::Consolidated<Raster::ICCProfile> GetICCProfile() const override { return profile; }
    /// L over 0 to 100 as 16 bits, and a and b over their range; what lies beyond is clamped.
    Kernel::Consolidated<Renderer::Colour> MakeColour(const Colour& colour) const override;
    /// 0 to 1 three times: images hold the 16-bit channels, which nothing scales by the ranges.
    std::vector<double> GetDefaultDecodeVec(int bitsPerComponent) const override;

    Kernel::Consolidated<Raster::ICCProfile> profile;
    /// A minimum, a maximum, b minimum, b maximum.
    std::vector<double> range;
};

} // namespace Quillet
