#include <Renderer/ColourCMYK.h>
#include <Renderer/ValueKey.h>

namespace Renderer {

namespace {

auto GetKey(const ColourCMYK& colour)
{
    const Raster::PixelCmykF& pixel = colour.pixel;
    return std::tuple(KeyOf(pixel.cyan), KeyOf(pixel.magenta), KeyOf(pixel.yellow), KeyOf(pixel.black),
                      KeyOf(pixel.alpha), KeyOf(colour.tint), KeyOf(colour.intensity), std::string_view(colour.name));
}

float FromByte(std::uint8_t sample)
{
    return static_cast<float>(sample) / 255.0f;
}

} // namespace

ColourCMYK::ColourCMYK(const Raster::PixelCmykF& components, double colourTint, double colourIntensity,
                       std::string colourName)
    : Colour(colourTint, colourIntensity, std::move(colourName)), pixel(components)
{}

Kernel::Consolidated<Colour> ColourCMYK::Create(const Raster::PixelCmyk8& pixel, double tint, double intensity,
                                                std::string name)
{
    const Raster::PixelCmykF inks(FromByte(pixel.cyan), FromByte(pixel.magenta), FromByte(pixel.yellow),
                                  FromByte(pixel.black), FromByte(pixel.alpha));
    return Kernel::ConsolidateObjectPostAlloc(ColourCMYK(inks, tint, intensity, std::move(name)));
}

Raster::ModelPixel ColourCMYK::GetModelPixel() const
{
    return {GetModel(), {pixel.cyan, pixel.magenta, pixel.yellow, pixel.black}, pixel.alpha};
}

Kernel::Consolidated<Colour> ColourCMYK::MakeWithAlpha(float alpha) const
{
    ColourCMYK copy(*this);
    copy.pixel.alpha = alpha;
    return Kernel::ConsolidateObjectPostAlloc(copy);
}

Kernel::Counted<Colour> ColourCMYK::Clone() const
{
    return Kernel::MakeCounted<ColourCMYK>(*this);
}

std::size_t ColourCMYK::GetHash() const
{
    return HashOf(GetKey(*this));
}

bool ColourCMYK::IsEqual(const Kernel::Consolidatable& other) const
{
    return GetKey(*this) == GetKey(static_cast<const ColourCMYK&>(other));
}

} // namespace Renderer
