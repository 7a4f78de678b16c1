#include <pixels/Format.h>
#include <pixels/Pixel.h>

#include <gtest/gtest.h>

namespace {

using namespace Raster;

TEST(Pixel, SamplesGoToTheirChannels)
{
    constexpr PixelCmykF inks(0.1f, 0.2f, 0.3f, 0.4f, 0.5f);
    EXPECT_EQ(inks.cyan, 0.1f);
    EXPECT_EQ(inks.magenta, 0.2f);
    EXPECT_EQ(inks.yellow, 0.3f);
    EXPECT_EQ(inks.black, 0.4f);
    EXPECT_EQ(inks.alpha, 0.5f);

    const PixelLab16 lab(65535, 1, 2, 3);
    EXPECT_EQ(lab.lightness, 65535);
    EXPECT_EQ(lab.a, 1);
    EXPECT_EQ(lab.b, 2);
    EXPECT_EQ(lab.alpha, 3);

    EXPECT_EQ(PixelGrayF(0.5f, 1), PixelGrayF(0.5f, 1));
    EXPECT_FALSE(PixelGrayF(0.5f, 1) == PixelGrayF(0.5f, 0));
    EXPECT_FALSE(PixelRgbF(0, 0, 1, 1) == PixelRgbF(0, 1, 0, 1));
    EXPECT_EQ(PixelRgbF(), PixelRgbF(0, 0, 0, 0));
}

TEST(Pixel, TakesNoRoomForMissingChannels)
{
    EXPECT_EQ(sizeof(PixelGrayF), 2 * sizeof(float));
    EXPECT_EQ(sizeof(PixelRgbF), 4 * sizeof(float));
    EXPECT_EQ(sizeof(PixelCmyk8), 5u);
    EXPECT_EQ(sizeof(PixelLab16), 8u);
}

TEST(Format, ModelIsThatOfTheColourChannels)
{
    constexpr ColourSpace models[] = {ColourSpace::Rgb,  ColourSpace::Rgb, ColourSpace::Gray, ColourSpace::Gray,
                                      ColourSpace::Cmyk, ColourSpace::Lab, ColourSpace::None, ColourSpace::None,
                                      ColourSpace::None, ColourSpace::Rgb, ColourSpace::None};
    int code = 0;
    for (const ColourSpace model : models) {
        EXPECT_EQ(GetColourSpaceOf(static_cast<Format>(code)), model) << code;
        ++code;
    }
    EXPECT_EQ(GetColourSpaceOf(static_cast<Format>(11)), ColourSpace::None);
    EXPECT_EQ(GetColourSpaceOf(static_cast<Format>(-1)), ColourSpace::None);
}

} // namespace
