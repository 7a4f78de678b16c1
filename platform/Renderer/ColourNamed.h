#pragma once

#include <Renderer/Colour.h>

namespace Renderer {

/// A colour known by its name, such as a spot ink, and the colour that shows it where the name is not known.
class QUILLET_API ColourNamed : public Colour
{
public:
    /// An ink with a plate of its own; else a name for a mixture of process inks.
    bool isSpot;
    /// Never null. Its alpha is this colour's.
    Kernel::Consolidated<Colour> alternative;

    /// Without an alternative, black shows the colour.
    ColourNamed(std::string colourName, bool isSpotInk, Kernel::Consolidated<Colour> shownAs, double colourTint = 1.0,
                double colourIntensity = 1.0);

    Raster::ColourSpace GetModel() const override { return alternative->GetModel(); }
    float GetAlpha() const override { return alternative->GetAlpha(); }
    Raster::ModelPixel GetModelPixel() const override { return alternative->GetModelPixel(); }
    const Colour& GetPlain() const override { return alternative->GetPlain(); }
    Kernel::Consolidated<Colour> MakeWithAlpha(float alpha) const override;
    Kernel::Counted<Colour> Clone() const override;

    std::size_t GetHash() const override;
    bool IsEqual(const Kernel::Consolidatable& other) const override;
};

} // namespace Renderer
