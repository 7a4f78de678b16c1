#pragma once

#include <Renderer/Colour.h>

namespace Renderer {

/// A colour of red, green and blue light, each from 0 to 1.
class QUILLET_API ColourRGB : public Colour
{
public:
    Raster::PixelRgbF pixel;

    explicit ColourRGB(const Raster::PixelRgbF& components, double colourTint = 1.0, double colourIntensity = 1.0,
                       std::string colourName = {});
    static Kernel::Consolidated<Colour> Create(float red, float green, float blue, float alpha, std::string name);

    Raster::ColourSpace GetModel() const override { return Raster::ColourSpace::Rgb; }
    float GetAlpha() const override { return pixel.alpha; }
    Raster::ModelPixel GetModelPixel() const override
    {
        return {GetModel(), {pixel.red, pixel.green, pixel.blue}, pixel.alpha};
    }
    Kernel::Consolidated<Colour> MakeWithAlpha(float alpha) const override;
    Kernel::Counted<Colour> Clone() const override;

    std::size_t GetHash() const override;
    bool IsEqual(const Kernel::Consolidatable& other) const override;
};

} // namespace Renderer
