#include "colour/IndexedColourSpace.h"

#include "colour/Spaces.h"
#include "support/Repeat.h"

#include <Renderer/ColourRGB.h>

#include <gmock/gmock.h>

#include <limits>

namespace Quillet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A palette from what stands behind the family name; further objects count from 5.
struct Palette : OneSpace
{
    explicit Palette(const std::string& parameters, std::vector<std::string> objects = {})
        : OneSpace("[/Indexed " + parameters + "]", std::move(objects))
    {}
};

Kernel::Consolidated<Renderer::Colour> MakeRgb(double red, double green, double blue)
{
    const auto channel = [](double value) { return static_cast<float>(value / 255); };
    return Renderer::ColourRGB::Create(channel(red), channel(green), channel(blue), 1, "");
}

TEST(IndexedColourSpaceTest, TreatsShortStringsAndShortStreamsApart)
{
    // Ten bytes for six entries of three: three whole ones.
    const std::string hex = "<0102030A0B0CFFFEFD77>";
    const std::string stream = PdfBuilder::MakeStream("0102030A0B0CFFFEFD77>", "/Filter /ASCIIHexDecode");
    for (const auto& [parameters, object, maxIndex] : {std::tuple("/DeviceRGB 5 " + hex, hex, 2),
                                                       {"/DeviceRGB 5 5 0 R", hex, 2},
                                                       {"/DeviceRGB 5 5 0 R", stream, 5}}) {
        const Palette palette(parameters, {object});
        EXPECT_EQ(palette.space->GetMaxIndex(), maxIndex);
        EXPECT_EQ(palette.Make({1 / 255.0}), MakeRgb(10, 11, 12));
        EXPECT_EQ(palette.Make({2 / 255.0}), MakeRgb(255, 254, 253));
        EXPECT_EQ(palette.Make({5 / 255.0}), MakeRgb(0, 0, 0));
        EXPECT_THAT(palette.GetErrors(), IsEmpty());
    }
}

TEST(IndexedColourSpaceTest, SelectsByFractionOfTheByteRange)
{
    const Palette palette("/DeviceRGB 255 <" + Repeat("000001", 128) + "00FF00" + Repeat("000001", 126) + "FF0000>");
    for (const double component : {1.0, 3.0, 1e300})
        EXPECT_EQ(palette.Make({component}), MakeRgb(255, 0, 0)) << component;
    EXPECT_EQ(palette.Make({0.5}), MakeRgb(0, 255, 0));
    for (const double component : {0.0, -7.0, 0.499 / 255, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(palette.Make({component}), MakeRgb(0, 0, 1)) << component;
    // A palette of 16 has no entry 255: the base's default colour.
    EXPECT_EQ(Palette("/DeviceRGB 15 <" + Repeat("000001", 16) + ">").Make({3}), MakeRgb(0, 0, 0));
    EXPECT_THAT(palette.space->GetDefaultDecodeVec(4), ElementsAre(0, 15));
}

TEST(IndexedColourSpaceTest, StaysUsableOrIsNoneWhenDamaged)
{
    constexpr int c_none = -2;
    const struct
    {
        const char* parameters;
        int maxIndex;
        std::size_t errorCount;
    } rows[] = {
        {"/DeviceRGB 256 <00>", c_none, 2},
        {"/DeviceRGB -1 <00>", c_none, 2},
        {"/DeviceRGB 4294967296 <00>", c_none, 2},
        {"/DeviceRGB 1 /Name", -1, 0},
        {"/Unknown 1 <00>", c_none, 2},
        // Broken off behind the inner array, and so at a closing bracket.
        {"[/Indexed /DeviceRGB 0 <000000>] 1 <0000>", -1, 1},
        {"/DeviceRGB 1 <000000010101> (more) [1 2] << /A 1 >>", 1, 0},
        {"/Pattern 1 <0000>", -1, 0},
        {"", -1, 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.parameters);
        const Palette palette(row.parameters);
        EXPECT_EQ(palette.GetErrors().size(), row.errorCount);
        ASSERT_EQ(palette.space != nullptr, row.maxIndex != c_none);
        if (!palette.space) continue;
        EXPECT_EQ(palette.space->GetMaxIndex(), row.maxIndex);
        EXPECT_TRUE(palette.Make({0.5}));
        EXPECT_TRUE(palette.space->MakeDefaultColour());
    }
}

} // namespace
} // namespace Quillet
