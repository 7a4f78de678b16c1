#include <Renderer/ColourCMYK.h>
#include <Renderer/ColourGrayscale.h>
#include <Renderer/ColourLAB.h>
#include <Renderer/ColourNamed.h>
#include <Renderer/ColourRGB.h>
#include <Renderer/ColourRegistration.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>

namespace {

using namespace Renderer;
using Pointer = Kernel::Consolidated<Colour>;

Pointer Gray(float gray, float alpha = 1)
{
    return Kernel::ConsolidateObjectPostAlloc(ColourGrayscale(Raster::PixelGrayF(gray, alpha)));
}

Pointer Rgb(float red, float green, float blue, float alpha = 1)
{
    return ColourRGB::Create(red, green, blue, alpha, "");
}

Pointer Cmyk(float cyan, float magenta, float yellow, float black)
{
    return Kernel::ConsolidateObjectPostAlloc(ColourCMYK(Raster::PixelCmykF(cyan, magenta, yellow, black, 1)));
}

/// Lightness 0 to 100, a and b from -128 to 127.
Pointer Lab(double lightness, double a, double b)
{
    const Raster::PixelLab16 pixel(static_cast<std::uint16_t>(std::lround(lightness * 655.35)),
                                   static_cast<std::uint16_t>(std::lround((a + 128) * 257)),
                                   static_cast<std::uint16_t>(std::lround((b + 128) * 257)), 65535);
    return ColourLAB::Create(pixel, 1.0, 1.0, "");
}

Pointer Named(const char* name, bool isSpot, Pointer alternative)
{
    return Kernel::ConsolidateObjectPostAlloc(ColourNamed(name, isSpot, std::move(alternative)));
}

TEST(Colour, ShowsAsRgb)
{
    using Space = Raster::ColourSpace;
    using Pixel = Raster::PixelRgbF;
    const Raster::PixelCmyk8 ink(255, 0, 51, 0, 255);
    // What it is, its model, and how near its pixel is to which.
    const std::tuple<const char*, Pointer, Space, Pixel, double> rows[] = {
        {"gray beyond white", Gray(1.5f), Space::Gray, Pixel(1.5, 1.5, 1.5, 1), 0},
        {"black hides cyan", Cmyk(1, 0, 0, 1), Space::Cmyk, Pixel(0, 0, 0, 1), 0},
        // 1 - (0.5 * 0.8 + 0.2) = 0.4; 1 - (0.25 * 0.8 + 0.2) = 0.6; 1 - 0.2 = 0.8.
        {"mixed inks", Cmyk(0.5f, 0.25f, 0, 0.2f), Space::Cmyk, Pixel(0.4f, 0.6f, 0.8f, 1), 1e-6},
        {"too much ink", Cmyk(3, -2, 0, 0.5f), Space::Cmyk, Pixel(0, 1, 0.5, 1), 1e-6},
        {"inks from bytes", ColourCMYK::Create(ink, 1, 1, ""), Space::Cmyk, Pixel(0, 1, 0.8f, 1), 1e-6},
        // The corners of sRGB in Lab under D50, published to two places.
        {"Lab red", Lab(54.29, 80.81, 69.89), Space::Lab, Pixel(1, 0, 0, 1), 5e-3},
        // Y = ((50 + 16) / 116)^3 = 0.184187, and 1.055 * Y^(1 / 2.4) - 0.055 = 0.466327.
        {"Lab middle gray", Lab(50, 0, 0), Space::Lab, Pixel(0.466327f, 0.466327f, 0.466327f, 1), 1e-3},
        {"Lab outside sRGB", Lab(50, 127, 127), Space::Lab, Pixel(1, 0, 0, 1), 1e-9},
        {"spot of a spot", Named("A", true, Named("B", true, Cmyk(0, 0, 1, 0))), Space::Cmyk, Pixel(1, 1, 0, 1), 0},
        {"spot without alternative", Named("Gold", true, nullptr), Space::Gray, Pixel(0, 0, 0, 1), 0},
        {"light registration", ColourRegistration::Create(0.5), Space::Cmyk, Pixel(0.25, 0.25, 0.25, 1), 1e-6},
    };
    for (const auto& [what, colour, model, expected, tolerance] : rows) {
        SCOPED_TRACE(what);
        EXPECT_EQ(colour->GetModel(), model);
        const Raster::PixelRgbF pixel = colour->GetRgbaPixel({});
        EXPECT_NEAR(pixel.red, expected.red, tolerance);
        EXPECT_NEAR(pixel.green, expected.green, tolerance);
        EXPECT_NEAR(pixel.blue, expected.blue, tolerance);
        EXPECT_EQ(pixel.alpha, 1);
    }
}

TEST(Colour, EqualColoursAreOneObject)
{
    constexpr float c_noNumber = std::numeric_limits<float>::quiet_NaN();
    const auto make = [](float zero, float noNumber) {
        return std::vector{Gray(zero),
                           Gray(noNumber),
                           Rgb(0, zero, 0),
                           Cmyk(0, 0, 0, 0),
                           Lab(50, 0, 0),
                           Named("Gold", true, Gray(0)),
                           ColourRegistration::Create(0.5)};
    };
    const std::vector<Pointer> kept = make(0, c_noNumber);
    const std::size_t size = Kernel::InternTable::GetSize();
    EXPECT_EQ(make(-0.0f, -c_noNumber), kept);
    EXPECT_EQ(Kernel::InternTable::GetSize(), size);
}

TEST(Colour, EveryPartOfAColourCounts)
{
    const Raster::PixelRgbF black(0, 0, 0, 1);
    const Raster::PixelCmykF noInk(0, 0, 0, 0, 1);
    const Pointer colours[] = {
        Gray(0),
        Rgb(0, 0, 0),
        Kernel::ConsolidateObjectPostAlloc(ColourRGB(black, 0.5)),
        Kernel::ConsolidateObjectPostAlloc(ColourRGB(black, 1.0, 0.5)),
        ColourRGB::Create(0, 0, 0, 1, "Ink"),
        Cmyk(0, 0, 0, 0),
        Kernel::ConsolidateObjectPostAlloc(ColourCMYK(noInk, 1.0, 1.0, "Registration")),
        ColourRegistration::Create(0),
        Lab(0, 0, 0),
        Named("Gold", true, Gray(0)),
        Named("Gold", false, Gray(0)),
        Named("Silver", true, Gray(0)),
        Named("Gold", true, Gray(1)),
    };
    std::set<const Colour*> distinct;
    for (const Pointer& colour : colours)
        distinct.insert(colour.Get());
    EXPECT_EQ(distinct.size(), std::size(colours));
}

TEST(Colour, AlphaChangesAloneAndBack)
{
    const Pointer colours[] = {
        Gray(0.5f),       ColourRGB::Create(0.25f, 0.5f, 1, 1, "Sky"), Cmyk(0.25f, 0, 0, 0.5f),
        Lab(40, 10, -20), Named("Gold", true, Cmyk(0, 0, 1, 0)),       ColourRegistration::Create(1)};
    for (const Pointer& colour : colours) {
        SCOPED_TRACE(colour->GetName() + std::to_string(static_cast<int>(colour->GetModel())));
        const Pointer half = colour->MakeWithAlpha(0.5f);
        EXPECT_NEAR(half->GetAlpha(), 0.5, 1e-5);
        EXPECT_EQ(half->GetName(), colour->GetName());
        const Colour &changed = *half, &original = *colour;
        EXPECT_EQ(typeid(changed), typeid(original));
        EXPECT_EQ(half->MakeWithAlpha(1), colour);
    }
    EXPECT_EQ(Lab(0, 0, 0)->MakeWithAlpha(std::numeric_limits<float>::quiet_NaN())->GetAlpha(), 0);
    EXPECT_EQ(Lab(0, 0, 0)->MakeWithAlpha(7)->GetAlpha(), 1);
}

} // namespace
