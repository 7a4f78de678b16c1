#pragma once

#include "colour/ColourSpace.h"

namespace Quillet {

class ColourSpaceFactory;
class Dictionary;
class Parser;
class Resources;

/// A palette of colours of another space.
class QUILLET_API IndexedColourSpace : public ColourSpace
{
public:
    /// Reads the rest of the array; `parser` stands behind the name. A fault raises the parser's kind and leaves what
    /// was read so far.
    IndexedColourSpace(Kernel::Counted<Parser> parser, Kernel::Counted<const Resources> resources,
                       Kernel::Counted<const ColourSpaceFactory> factory);

    bool IsSpecial() const override { return true; }
    bool IsIndexed() const override { return true; }
    int GetComponentCount() const override { return 1; }
    /// -1 for an empty palette.
    int GetMaxIndex() const override { return static_cast<int>(table.size()) - 1; }
    int GetFormat() const override { return 0; }
    void AddRasterFormats(RasterFormatPicker& picker, bool isExplicit) const override;
    Kernel::Consolidated<Raster::ICCProfile> GetICCProfile() const override;
    /// The component is a fraction of the full byte range and no entry number: 1 and above select entry 255. An entry
    /// outside the palette gives the base's default colour.
    Kernel::Consolidated<Renderer::Colour> MakeColour(const Colour& colour) const override;
    std::vector<double> GetDefaultDecodeVec(int bitsPerComponent) const override;

    std::vector<Colour> table;
    /// Null if the definition has none.
    Kernel::Counted<const ColourSpace> base;

private:
    void LoadTable(Parser& parser, int entryCount);
    /// Whole entries only: too few bytes give a short table.
    void LoadTableFromStringBuf(const std::vector<char>& bytes, int entryCount);
    void LoadTableFromStream(Kernel::Counted<Dictionary> dictionary, int entryCount);
};

} // namespace Quillet
