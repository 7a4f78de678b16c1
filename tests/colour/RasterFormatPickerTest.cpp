#include "colour/RasterFormatPicker.h"

#include <gtest/gtest.h>

namespace Quillet {
namespace {

using Raster::ColourSpace;
using Raster::Format;

Kernel::Consolidated<Raster::ICCProfile> MakeProfile(ColourSpace model, std::uint8_t content)
{
    return Kernel::ConsolidateObjectPostAlloc(Raster::ICCProfile({content}, model));
}

TEST(RasterFormatPickerTest, KeepsTheRichestFormat)
{
    RasterFormatPicker picker;
    EXPECT_EQ(picker.Add(Format::AlphaOnly8, nullptr, true), 0);
    EXPECT_EQ(picker.GetFormat(), Format::None);
    const Format ascending[] = {Format::Gray8, Format::Gray16,   Format::Lab16, Format::Rgb8,
                                Format::Rgb16, Format::RgbFloat, Format::Cmyk8};
    int rank = 0;
    for (const Format format : ascending) {
        EXPECT_EQ(picker.Add(format, nullptr, false), ++rank);
        EXPECT_EQ(picker.Add(Format::Gray8, nullptr, true), rank);
        EXPECT_EQ(picker.GetFormat(), format);
    }
}

TEST(RasterFormatPickerTest, TakesAProfilesFormatFromItsModel)
{
    const std::pair<ColourSpace, Format> cases[] = {
        {ColourSpace::Gray, Format::Gray8}, {ColourSpace::Rgb, Format::Rgb8},      {ColourSpace::Cmyk, Format::Cmyk8},
        {ColourSpace::Lab, Format::Lab16},  {ColourSpace::OtherRgb, Format::Rgb8}, {ColourSpace::None, Format::None}};
    for (const auto& [model, format] : cases) {
        RasterFormatPicker picker;
        picker.Add(Format::None, MakeProfile(model, 1), false);
        EXPECT_EQ(picker.GetFormat(), format) << static_cast<int>(model);
    }
}

TEST(RasterFormatPickerTest, LetsExplicitProfilesStand)
{
    const auto used = MakeProfile(ColourSpace::Rgb, 1);
    const auto later = MakeProfile(ColourSpace::Rgb, 2);
    const auto explicitly = MakeProfile(ColourSpace::Rgb, 3);
    const auto gray = MakeProfile(ColourSpace::Gray, 4);
    RasterFormatPicker picker;
    const auto add = [&](const auto& profile, bool isExplicit) {
        picker.Add(Format::None, profile, isExplicit);
        return picker.profiles.GetProfileFor(ColourSpace::Rgb);
    };
    EXPECT_EQ(add(used, false), used);
    EXPECT_EQ(add(later, false), later);
    EXPECT_EQ(add(explicitly, true), explicitly);
    EXPECT_EQ(add(used, false), explicitly);
    EXPECT_EQ(add(later, true), later);

    Raster::ICCManager::ICCProfileSet base;
    base.intent = Raster::RenderingIntent::Saturation;
    base.SetProfile(ColourSpace::Rgb, used);
    base.SetProfile(ColourSpace::Gray, gray);
    const auto result = picker.GetProfiles(base);
    EXPECT_EQ(result.GetProfileFor(ColourSpace::Rgb), later);
    EXPECT_EQ(result.GetProfileFor(ColourSpace::Gray), gray);
    EXPECT_EQ(result.intent, Raster::RenderingIntent::Saturation);
}

} // namespace
} // namespace Quillet
