#pragma once

#include <Renderer/Colour.h>

namespace Renderer {

/// A colour of the four process inks: 0 is no ink, 1 is full ink.
class QUILLET_API ColourCMYK : public Colour
{
public:
    Raster::PixelCmykF pixel;

    explicit ColourCMYK(const Raster::PixelCmykF& components, double colourTint = 1.0, double colourIntensity = 1.0,
                        std::string colourName = {});
    /// From bytes, 255 being full ink and opaque.
    static Kernel::Consolidated<Colour> Create(const Raster::PixelCmyk8& pixel, double tint, double intensity,
                                               std::string name);

    Raster::ColourSpace GetModel() const override { return Raster::ColourSpace::Cmyk; }
    float GetAlpha() const override { return pixel.alpha; }
    Raster::ModelPixel GetModelPixel() const override;
    Kernel::Consolidated<Colour> MakeWithAlpha(float alpha) const override;
    Kernel::Counted<Colour> Clone() const override;

    std::size_t GetHash() const override;
    bool IsEqual(const Kernel::Consolidatable& other) const override;
};

} // namespace Renderer
