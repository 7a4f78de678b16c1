#include <Renderer/ColourLAB.h>
#include <Renderer/ValueKey.h>

#include <algorithm>
#include <cmath>

namespace Renderer {

namespace {

auto GetKey(const ColourLAB& colour)
{
    const Raster::PixelLab16& pixel = colour.pixel;
    return std::tuple(pixel.lightness, pixel.a, pixel.b, pixel.alpha, KeyOf(colour.tint), KeyOf(colour.intensity),
                      std::string_view(colour.name));
}

struct Xyz
{
    double x;
    double y;
    double z;
};

/// The white of D50, as ICC profiles have it.
constexpr Xyz c_d50{0.9642, 1.0, 0.8249};

/// CIE 15: the inverse of the cube root with its linear foot.
double FromCubeRoot(double root)
{
    constexpr double c_foot = 6.0 / 29.0;
    return root > c_foot ? root * root * root : 3 * c_foot * c_foot * (root - 4.0 / 29.0);
}

Xyz ToXyz(double lightness, double a, double b)
{
    const double y = (lightness + 16) / 116;
    return {c_d50.x * FromCubeRoot(y + a / 500), c_d50.y * FromCubeRoot(y), c_d50.z * FromCubeRoot(y - b / 200)};
}

/// IEC 61966-2-1: from light to the sample that stands for it, clipped to what sRGB holds.
float ToSample(double light)
{
    const double clipped = std::clamp(light, 0.0, 1.0);
    const double sample = clipped <= 0.0031308 ? 12.92 * clipped : 1.055 * std::pow(clipped, 1 / 2.4) - 0.055;
    return static_cast<float>(sample);
}

} // namespace

ColourLAB::ColourLAB(const Raster::PixelLab16& components, double colourTint, double colourIntensity,
                     std::string colourName)
    : Colour(colourTint, colourIntensity, std::move(colourName)), pixel(components)
{}

Kernel::Consolidated<Colour> ColourLAB::Create(const Raster::PixelLab16& pixel, double tint, double intensity,
                                               std::string name)
{
    return Kernel::ConsolidateObjectPostAlloc(ColourLAB(pixel, tint, intensity, std::move(name)));
}

float ColourLAB::GetAlpha() const
{
    return static_cast<float>(pixel.alpha) / 65535.0f;
}

Raster::PixelRgbF ColourLAB::GetRgbaPixel() const
{
    const Xyz xyz = ToXyz(pixel.lightness * (100.0 / 65535), pixel.a / 257.0 - 128, pixel.b / 257.0 - 128);
    // The linear Bradford adaptation from D50 to D65 and the primaries of sRGB, in one matrix.
    const double red = 3.1338561 * xyz.x - 1.6168667 * xyz.y - 0.4906146 * xyz.z;
    const double green = -0.9787684 * xyz.x + 1.9161415 * xyz.y + 0.0334540 * xyz.z;
    const double blue = 0.0719453 * xyz.x - 0.2289914 * xyz.y + 1.4052427 * xyz.z;
    return Raster::PixelRgbF(ToSample(red), ToSample(green), ToSample(blue), GetAlpha());
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
