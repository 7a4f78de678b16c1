#pragma once

#include "colour/ColourSpace.h"

namespace Quillet {

class ColourSpaceFactory;
class Parser;
class Resources;

/// The space whose colours are patterns, looked up by name in the resources that it was made with.
class QUILLET_API PatternColourSpace : public ColourSpace
{
public:
    /// Reads the rest of the array; `parser` stands behind the name, or is null for a bare name.
    PatternColourSpace(Kernel::Counted<Parser> parser, Kernel::Counted<const Resources> scope,
                       Kernel::NonCounted<const ColourSpaceFactory> factory);
    ~PatternColourSpace() override;

    bool IsSpecial() const override { return true; }
    bool IsPattern() const override { return true; }
    bool IsColouredPattern(const std::string& name) const override;
    int GetComponentCount() const override { return underlying ? underlying->GetComponentCount() : 0; }
    int GetFormat() const override { return underlying ? underlying->GetFormat() : 0; }
    void AddRasterFormats(RasterFormatPicker& picker, bool isExplicit) const override;
    Kernel::Consolidated<Raster::ICCProfile> GetICCProfile() const override;
    Kernel::Counted<Renderer::FillDescriptor> MakeDefaultFillDescriptor() const override;
    /// Raises `UnimplementedFill` and gives no fill for a pattern that is not there.
    Kernel::Counted<Renderer::FillDescriptor>
    MakePatternFillDescriptor(const Colour& colour, const std::string& name,
                              Kernel::NonCounted<GraphicsStateStack> stack) const override;
    /// Black, whatever is given.
    Kernel::Consolidated<Renderer::Colour> MakeColour(const Colour& colour) const override;
    std::vector<double> GetDefaultDecodeVec(int bitsPerComponent) const override;

    /// A twin of those that keep this space, so that neither keeps the other for ever; may be null.
    Kernel::Counted<const Resources> resources;
    /// The space of the colours for patterns without colours of their own; may be null.
    Kernel::Counted<const ColourSpace> underlying;

private:
    void ReadUnderlying(Parser& array, Kernel::NonCounted<const Resources> scope,
                        Kernel::NonCounted<const ColourSpaceFactory> factory);
};

} // namespace Quillet
