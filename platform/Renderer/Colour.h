#pragma once

#include <Kernel/Consolidated.h>
#include <Kernel/Export.h>
#include <Raster/ICCManager.h>
#include <Raster/Pixel.h>

#include <string>
#include <utility>

namespace Renderer {

/// A colour in the model in which the document gives it. Interned and then immutable: equal colours are one object.
class QUILLET_API Colour : public Kernel::Consolidatable
{
public:
    /// The part of a spot colour's full strength that this colour stands for. The components are already weakened by
    /// it: hosts that know the spot read it, nothing here applies it.
    double tint = 1.0;
    /// A further strength for hosts with a range beyond white; 1 is plain. Carried, and not applied here.
    double intensity = 1.0;
    /// UTF-8; empty for a colour without a name.
    std::string name;

    /// The model of the components; of a named colour, that of its alternative.
    virtual Raster::ColourSpace GetModel() const = 0;
    /// 0 is transparent, 1 is opaque.
    virtual float GetAlpha() const = 0;
    const std::string& GetName() const { return name; }

    /// The colour in its own model; of a named colour, its alternative.
    virtual Raster::ModelPixel GetModelPixel() const = 0;
    /// The colour in sRGB with its alpha, as `Raster::ICCManager::MakeRgba` has it. An empty set converts by formula.
    Raster::PixelRgbF GetRgbaPixel(const Raster::ICCManager::ICCProfileSet& profiles) const
    {
        return Raster::ICCManager::GetInstance().MakeRgba(GetModelPixel(), profiles);
    }

    /// The colour by components that shows this one: itself, or a named colour's alternative. Lives as long as this.
    virtual const Colour& GetPlain() const { return *this; }

    /// The same colour with another alpha, interned. Allocates nothing if that colour is in use already.
    virtual Kernel::Consolidated<Colour> MakeWithAlpha(float alpha) const = 0;

    /// A copy to change and intern.
    virtual Kernel::Counted<Colour> Clone() const = 0;

protected:
    Colour() = default;
    Colour(double colourTint, double colourIntensity, std::string colourName)
        : tint(colourTint), intensity(colourIntensity), name(std::move(colourName))
    {}
};

} // namespace Renderer
