#include <Renderer/ColourLAB.h>
#include <Renderer/ValueKey.h>

#include <algorithm>
#include <cmath>

namespace Renderer {

namespace {

auto GetKey(const ColourLAB& colour)
{
    const Raster::PixelLab16& pixel = colour.pixel;
    return std::tuple(pixel.lightness, pixel.a, pixel.b, pixel.alpha, KeyOf(colour.range.aMinimum),
                      KeyOf(colour.range.aMaximum), KeyOf(colour.range.bMinimum), KeyOf(colour.range.bMaximum),
                      KeyOf(colour.tint), KeyOf(colour.intensity), std::string_view(colour.name));
}

} // namespace

ColourLAB::ColourLAB(const Raster::PixelLab16& components, double colourTint, double colourIntensity,
                     std::string colourName, const Raster::LabRange& colourRange)
    : Colour(colourTint, colourIntensity, std::move(colourName)), pixel(components), range(colourRange)
{}

Kernel::Consolidated<Colour> ColourLAB::Create(const Raster::PixelLab16& pixel, double tint, double intensity,
                                               std::string name, const Raster::LabRange& range)
{
    return Kernel::ConsolidateObjectPostAlloc(ColourLAB(pixel, tint, intensity, std::move(name), range));
}

float ColourLAB::GetAlpha() const
{
    return static_cast<float>(pixel.alpha) / 65535.0f;
}

ColourLAB::LabValues ColourLAB::GetLab() const
{
    constexpr double c_maximum = 65535;
    return {pixel.lightness * 100.0 / c_maximum,
            range.aMinimum + pixel.a * (range.aMaximum - range.aMinimum) / c_maximum,
            range.bMinimum + pixel.b * (range.bMaximum - range.bMinimum) / c_maximum};
}

Raster::ModelPixel ColourLAB::GetModelPixel() const
{
    const LabValues lab = GetLab();
    return {GetModel(), {lab.lightness, lab.a, lab.b}, GetAlpha()};
}

Kernel::Consolidated<Colour> ColourLAB::MakeWithAlpha(float alpha) const
{
    ColourLAB copy(*this);
    // Written so that what is no number becomes 0.
    const float share = alpha > 0 ? std::min(alpha, 1.0f) : 0.0f;
    copy.pixel.alpha = static_cast<std::uint16_t>(std::lround(share * 65535.0f));
    return Kernel::ConsolidateObjectPostAlloc(copy);
}

Kernel::Counted<Colour> ColourLAB::Clone() const
{
    return Kernel::MakeCounted<ColourLAB>(*this);
}

std::size_t ColourLAB::GetHash() const
{
    return HashOf(GetKey(*this));
}

bool ColourLAB::IsEqual(const Kernel::Consolidatable& other) const
{
    return GetKey(*this) == GetKey(static_cast<const ColourLAB&>(other));
}

} // namespace Renderer
