#include <pixels/ICCManager.h>

#include <gtest/gtest.h>

namespace {

using namespace Raster;

Kernel::Consolidated<ICCProfile> Make(std::vector<std::uint8_t> bytes, ColourSpace model)
{
    return Kernel::ConsolidateObjectSacrifice(Kernel::MakeCounted<ICCProfile>(std::move(bytes), model));
}

TEST(ICCProfile, EqualBytesAreOneProfile)
{
    const auto first = Make({1, 2, 3}, ColourSpace::Rgb);
    EXPECT_EQ(Make({1, 2, 3}, ColourSpace::Rgb), first);
    EXPECT_FALSE(Make({1, 2, 4}, ColourSpace::Rgb) == first);
    EXPECT_FALSE(Make({1, 2}, ColourSpace::Rgb) == first);
    EXPECT_FALSE(Make({1, 2, 3}, ColourSpace::Lab) == first);
    EXPECT_EQ(Make({}, ColourSpace::Gray)->GetBytes().size(), 0u);
}

TEST(ICCProfileSet, KeepsOneProfileAModel)
{
    const auto rgb = Make({1}, ColourSpace::Rgb);
    const auto cmyk = Make({2}, ColourSpace::Cmyk);
    ICCManager::ICCProfileSet set;
    const ICCManager::ICCProfileSet empty = set;
    set.SetProfile(ColourSpace::Rgb, rgb);
    set.SetProfileForFormat(Format::Cmyk8, cmyk);

    EXPECT_EQ(set.GetProfileFor(ColourSpace::Rgb), rgb);
    EXPECT_EQ(set.GetProfileForFormat(Format::Rgb16), rgb);
    EXPECT_EQ(set.GetProfileForFormat(Format::RgbFloat), rgb);
    EXPECT_EQ(set.GetProfileFor(ColourSpace::Cmyk), cmyk);
    EXPECT_EQ(set.GetProfileFor(ColourSpace::Gray), nullptr);
    EXPECT_EQ(set.GetProfileFor(ColourSpace::OtherRgb), nullptr);
    EXPECT_FALSE(set == empty);

    ICCManager::ICCProfileSet copy = set;
    EXPECT_EQ(copy, set);
    copy.SetProfile(ColourSpace::Rgb, nullptr);
    EXPECT_EQ(copy.GetProfileForFormat(Format::Rgb8), nullptr);
    EXPECT_EQ(set.GetProfileFor(ColourSpace::Rgb), rgb);
}

TEST(ICCProfileSet, HasNoPlaceForNoModel)
{
    const auto rgb = Make({1}, ColourSpace::Rgb);
    ICCManager::ICCProfileSet set;
    for (const ColourSpace model : {ColourSpace::None, static_cast<ColourSpace>(6), static_cast<ColourSpace>(-1)}) {
        set.SetProfile(model, rgb);
        EXPECT_EQ(set.GetProfileFor(model), nullptr) << static_cast<int>(model);
    }
    for (const Format format : {Format::None, Format::Alpha8, Format::AlphaFloat, static_cast<Format>(99)}) {
        set.SetProfileForFormat(format, rgb);
        EXPECT_EQ(set.GetProfileForFormat(format), nullptr) << static_cast<int>(format);
    }
    EXPECT_EQ(set, ICCManager::ICCProfileSet());
}

} // namespace
