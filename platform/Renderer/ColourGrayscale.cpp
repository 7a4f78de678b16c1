#include <Renderer/ColourGrayscale.h>
#include <Renderer/ValueKey.h>

namespace Renderer {

namespace {

auto GetKey(const ColourGrayscale& colour)
{
    return std::tuple(KeyOf(colour.pixel.intensity), KeyOf(colour.pixel.alpha), KeyOf(colour.tint),
                      KeyOf(colour.intensity), std::string_view(colour.name));
}

} // namespace

ColourGrayscale::ColourGrayscale(const Raster::PixelGrayF& components, double colourTint, double colourIntensity,
                                 std::string colourName)
    : Colour(colourTint, colourIntensity, std::move(colourName)), pixel(components)
{}

Kernel::Consolidated<Colour> ColourGrayscale::Create(double gray, double tint, double intensity, std::string name)
{
    return Kernel::ConsolidateObjectPostAlloc(
        ColourGrayscale(Raster::PixelGrayF(static_cast<float>(gray), 1.0f), tint, intensity, std::move(name)));
}

Raster::ModelPixel ColourGrayscale::GetModelPixel() const
{
    return {GetModel(), {pixel.intensity}, pixel.alpha};
}

Kernel::Consolidated<Colour> ColourGrayscale::MakeWithAlpha(float alpha) const
{
    ColourGrayscale copy(*this);
    copy.pixel.alpha = alpha;
    return Kernel::ConsolidateObjectPostAlloc(copy);
}

Kernel::Counted<Colour> ColourGrayscale::Clone() const
{
    return Kernel::MakeCounted<ColourGrayscale>(*this);
}

std::size_t ColourGrayscale::GetHash() const
{
    return HashOf(GetKey(*this));
}

bool ColourGrayscale::IsEqual(const Kernel::Consolidatable& other) const
{
    return GetKey(*this) == GetKey(static_cast<const ColourGrayscale&>(other));
}

} // namespace Renderer
