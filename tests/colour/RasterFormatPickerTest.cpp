#include "colour/RasterFormatPicker.h"

#include <gtest/gtest.h>

namespace Quillet {
namespace {

using Raster::ColourSpace;
using Raster::Format;

Kernel::Consolidated<Raster::ICCProfile> MakeProfile(ColourSpace model, std::uint8_t content = 1)
{
    return Kernel::ConsolidateObjectPostAlloc(Raster::ICCProfile({content}, model));
}

/// Formats and those of profiles' models, from the poorest to the richest.
TEST(RasterFormatPickerTest, KeepsTheRichestFormat)
{
    RasterFormatPicker picker;
    EXPECT_EQ(picker.Add(Format::None, MakeProfile(ColourSpace::None), true), 0);
    EXPECT_EQ(picker.Add(Format::AlphaOnly8, nullptr, true), 0);
    EXPECT_EQ(picker.GetFormat(), Format::None);
    const std::pair<ColourSpace, Format> ascending[] = {
        {ColourSpace::Gray, Format::Gray8}, {ColourSpace::None, Format::Gray16}, {ColourSpace::Lab, Format::Lab16},
        {ColourSpace::Rgb, Format::Rgb8},   {ColourSpace::None, Format::Rgb16},  {ColourSpace::None, Format::RgbFloat},
        {ColourSpace::Cmyk, Format::Cmyk8}};
    int rank = 0;
    for (const auto& [model, format] : ascending) {
        EXPECT_GT(picker.Add(model == ColourSpace::None ? format : Format::None, MakeProfile(model), false), rank);
        rank = picker.Add(Format::Gray8, nullptr, true);
        EXPECT_EQ(picker.GetFormat(), format);
    }
    RasterFormatPicker other;
    other.Add(Format::None, MakeProfile(ColourSpace::OtherRgb), false);
    EXPECT_EQ(other.GetFormat(), Format::Rgb8);
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
