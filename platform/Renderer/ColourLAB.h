#pragma once

#include <Renderer/Colour.h>

namespace Renderer {

/// A CIE L*a*b* colour under D50, in the 16-bit encoding of ICC.1:2010, 10.8: lightness 0 to 100 over the whole range,
/// a and b from -128 to 127, so that 32896 (0x8080) is neutral.
class QUILLET_API ColourLAB : public Colour
{
public:
    Raster::PixelLab16 pixel;

    explicit ColourLAB(const Raster::PixelLab16& components, double colourTint = 1.0, double colourIntensity = 1.0,
                       std::string colourName = {});
    static Kernel::Consolidated<Colour> Create(const Raster::PixelLab16& pixel, double tint, double intensity,
                                               std::string name);

    Raster::ColourSpace GetModel() const override { return Raster::ColourSpace::Lab; }
    float GetAlpha() const override;
    /// Colours outside sRGB are clipped channel by channel.
    Raster::PixelRgbF GetRgbaPixel() const override;
    Kernel::Consolidated<Colour> MakeWithAlpha(float alpha) const override;
    Kernel::Counted<Colour> Clone() const override;

    std::size_t GetHash() const override;
    bool IsEqual(const Kernel::Consolidatable& other) const override;
};

} // namespace Renderer
