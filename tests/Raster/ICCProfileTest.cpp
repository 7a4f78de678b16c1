#include <Raster/ICCManager.h>

#include <gtest/gtest.h>

namespace {

using namespace Raster;

Kernel::Consolidated<ICCProfile> Make(std::vector<std::uint8_t> bytes, ColourSpace model)
{
    return Kernel::ConsolidateObjectSacrifice(Kernel::MakeCounted<ICCProfile>(std::move(bytes), model));
}

TEST(ICCProfileSet, FindsTheProfileOfAFormatsModel)
{
    const auto rgb = Make({1}, ColourSpace::Rgb);
    ICCManager::ICCProfileSet set;
    set.SetProfileForFormat(Format::Rgb16, rgb);
    set.SetProfileForFormat(Format::AlphaOnly8, rgb);
    EXPECT_EQ(set.GetProfileFor(ColourSpace::Rgb), rgb);
    EXPECT_EQ(set.GetProfileForFormat(Format::Cmyk8), nullptr);
    EXPECT_EQ(set.GetProfileForFormat(Format::AlphaOnly8), nullptr);
}

TEST(ICCProfile, EqualBytesAreOneProfile)
{
    const auto first = Make({1, 2, 3}, ColourSpace::Rgb);
    EXPECT_EQ(Make({1, 2, 3}, ColourSpace::Rgb), first);
    EXPECT_FALSE(Make({1, 2, 4}, ColourSpace::Rgb) == first);
    EXPECT_FALSE(Make({1, 2}, ColourSpace::Rgb) == first);
    EXPECT_FALSE(Make({1, 2, 3}, ColourSpace::Lab) == first);
}

} // namespace
