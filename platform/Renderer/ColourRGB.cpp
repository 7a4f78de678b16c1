#include <Renderer/ColourRGB.h>
#include <Renderer/ValueKey.h>

namespace Renderer {

namespace {

auto GetKey(const ColourRGB& colour)
{
    const Raster::PixelRgbF& pixel = colour.pixel;
    return std::tuple(KeyOf(pixel.red), KeyOf(pixel.green), KeyOf(pixel.blue), KeyOf(pixel.alpha), KeyOf(colour.tint),
                      KeyOf(colour.intensity), std::string_view(colour.name));
}

} // namespace

ColourRGB::ColourRGB(const Raster::PixelRgbF& components, double colourTint, double colourIntensity,
                     std::string colourName)
    : Colour(colourTint, colourIntensity, std::move(colourName)), pixel(components)
{}

Kernel::Consolidated<Colour> ColourRGB::Create(float red, float green, float blue, float alpha, std::string name)
{
    return Kernel::ConsolidateObjectPostAlloc(
        ColourRGB(Raster::PixelRgbF(red, green, blue, alpha), 1.0, 1.0, std::move(name)));
}

Kernel::Consolidated<Colour> ColourRGB::MakeWithAlpha(float alpha) const
{
    ColourRGB copy(*this);
    copy.pixel.alpha = alpha;
    return Kernel::ConsolidateObjectPostAlloc(copy);
}

Kernel::Counted<Colour> ColourRGB::Clone() const
{
    return Kernel::MakeCounted<ColourRGB>(*this);
}

std::size_t ColourRGB::GetHash() const
{
    return HashOf(GetKey(*this));
}

bool ColourRGB::IsEqual(const Kernel::Consolidatable& other) const
{
    return GetKey(*this) == GetKey(static_cast<const ColourRGB&>(other));
}

} // namespace Renderer
