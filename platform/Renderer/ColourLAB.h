#pragma once

#include <Renderer/Colour.h>
#include <Raster/LabRange.h>

namespace Renderer {

/// A CIE L*a*b* colour under D50 in 16 bits a channel: lightness from 0 to 100, and a and b over a range of their own.
class QUILLET_API ColourLAB : public Colour
{
public:
    struct LabValues
    {
        double lightness;
        double a;
        double b;
    };

    Raster::PixelLab16 pixel;
    /// Without another one, that of ICC.1:2010, 10.8, in which 32896 (0x8080) is neutral.
    Raster::LabRange range;

    explicit ColourLAB(const Raster::PixelLab16& components, double colourTint = 1.0, double colourIntensity = 1.0,
                       std::string colourName = {}, const Raster::LabRange& colourRange = {});
    static Kernel::Consolidated<Colour> Create(const Raster::PixelLab16& pixel, double tint, double intensity,
                                               std::string name, const Raster::LabRange& range = {});

    /// In the units of the model: lightness from 0 to 100.
    LabValues GetLab() const;

    Raster::ColourSpace GetModel() const override { return Raster::ColourSpace::Lab; }
    float GetAlpha() const override;
    Raster::ModelPixel GetModelPixel() const override;
    Kernel::Consolidated<Colour> MakeWithAlpha(float alpha) const override;
    Kernel::Counted<Colour> Clone() const override;

    std::size_t GetHash() const override;
    bool IsEqual(const Kernel::Consolidatable& other) const override;
};

} // namespace Renderer
