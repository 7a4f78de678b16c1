#pragma once

#include "colour/ColourSpace.h"

namespace Quillet {

class ColourSpaceFactory;
class Function;
class Parser;
class Resources;

/// "Separation" and "DeviceN" (ISO 32000-2, 8.6.6.4 and 8.6.6.5): amounts of inks by name, and a function that gives
/// their look in another space.
class QUILLET_API MultitoneColourSpace : public ColourSpace
{
public:
    /// Reads the rest of the array; `parser` stands behind the name. A fault raises the parser's kind and leaves what
    /// was read so far.
    MultitoneColourSpace(Kernel::Counted<Parser> parser, Kernel::Counted<const Resources> resources,
                         Kernel::Counted<const ColourSpaceFactory> factory);
    ~MultitoneColourSpace() override;

    bool IsSpecial() const override { return true; }
    int GetComponentCount() const override { return componentCount; }
    int GetFormat() const override { return 0; }
    void AddRasterFormats(RasterFormatPicker& picker, bool isExplicit) const override;
    Kernel::Consolidated<Raster::ICCProfile> GetICCProfile() const override;
    /// A single ink at full strength keeps its name; weaker, it is the colour that shows it, with the tint noted.
    Kernel::Consolidated<Renderer::Colour> MakeColour(const Colour& colour) const override;
    std::vector<double> GetDefaultDecodeVec(int bitsPerComponent) const override;

    /// The full strength of one ink. The process inks are known by name, whatever the file says of their look.
    Kernel::Consolidated<Renderer::Colour> GetNamedColour(const std::string& name) const;
    /// The colour through `transform` and `alternate`.
    Kernel::Consolidated<Renderer::Colour> BaseMakeColour(const Colour& colour) const;
    /// Some name stands for an ink.
    static bool HasColour(const std::vector<std::string>& names);

    /// Null if the definition has none.
    Kernel::Counted<const ColourSpace> alternate;
    /// Null if the definition breaks off before it.
    Kernel::Counted<const Function> transform;
    /// Null for several inks, unless none of them marks anything.
    Kernel::Consolidated<Renderer::Colour> namedColour;
    int componentCount = 0;
};

} // namespace Quillet
