#pragma once

#include <Renderer/Colour.h>

namespace Renderer {

/// A gray: 0 is black, 1 is white.
class QUILLET_API ColourGrayscale : public Colour
{
public:
    Raster::PixelGrayF pixel;

    explicit ColourGrayscale(const Raster::PixelGrayF& components, double colourTint = 1.0,
                             double colourIntensity = 1.0, std::string colourName = {});
    /// An opaque gray.
    static Kernel::Consolidated<Colour> Create(double gray, double tint, double intensity, std::string name);

    Raster::ColourSpace GetModel() const override { return Raster::ColourSpace::Gray; }
    float GetAlpha() const override { return pixel.alpha; }
    Raster::ModelPixel GetModelPixel() const override;
    Kernel::Consolidated<Colour> MakeWithAlpha(float alpha) const override;
    Kernel::Counted<Colour> Clone() const override;

    std::size_t GetHash() const override;
    bool IsEqual(const Kernel::Consolidatable& other) const override;
};

} // namespace Renderer
