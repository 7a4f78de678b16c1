#include "colour/MultitoneColourSpace.h"

#include "colour/FunctionFile.h"
#include "colour/IndexedColourSpace.h"
#include "colour/LabColourSpace.h"
#include "colour/Spaces.h"
#include "support/Repeat.h"

#include <Renderer/ColourCMYK.h>
#include <Renderer/ColourLAB.h>
#include <Renderer/ColourNamed.h>
#include <Renderer/ColourRegistration.h>
#include <Renderer/ColourRGB.h>

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace Quillet {
namespace {

using testing::IsEmpty;

/// Object 5 turns a tint into RGB: white at 0, orange at 1.
struct Ink : OneSpace
{
    explicit Ink(const std::string& definition) : OneSpace(definition, {MakePower("/C0 [1 1 1] /C1 [1 0.5 0] /N 1")}) {}
};

/// Object 5 turns two tints into RGB.
struct Inks : OneSpace
{
    explicit Inks(const std::string& definition)
        : OneSpace(
              definition,
              {PdfBuilder::MakeStream("{ exch 0 }", "/FunctionType 4 /Domain [0 1 0 1] /Range [0 1 0 1 0 1]"), "<< >>"})
    {}
};

Kernel::Consolidated<Renderer::Colour> MakeCmyk(std::uint8_t c, std::uint8_t m, std::uint8_t y, std::uint8_t k,
                                                std::uint8_t alpha = 255)
{
    return Renderer::ColourCMYK::Create(Raster::PixelCmyk8(c, m, y, k, alpha), 1.0, 1.0, {});
}

TEST(MultitoneColourSpaceTest, KnowsProcessInksByName)
{
    const auto registration = Renderer::ColourRegistration::Create(1.0);
    const std::pair<const char*, Kernel::Consolidated<Renderer::Colour>> rows[] = {
        {"Cyan", MakeCmyk(255, 0, 0, 0)},  {"Magenta", MakeCmyk(0, 255, 0, 0)}, {"Yellow", MakeCmyk(0, 0, 255, 0)},
        {"Black", MakeCmyk(0, 0, 0, 255)}, {"None", MakeCmyk(0, 0, 0, 0, 0)},   {"All", registration},
        {"Registration", registration},
    };
    for (const auto& [name, colour] : rows) {
        const Ink ink(std::string("[/Separation /") + name + " /DeviceRGB 5 0 R]");
        ASSERT_TRUE(ink.space) << name;
        EXPECT_EQ(ink.Make({1}), colour) << name;
        // Weaker, even they go through the file's transform.
        EXPECT_TRUE(dynamic_cast<const Renderer::ColourRGB*>(ink.Make({0.5}).Get())) << name;
    }
}

TEST(MultitoneColourSpaceTest, KeepsTheNameOfASpotAtFullTintOnly)
{
    const Ink ink("[/Separation /PANTONE#20Orange /DeviceRGB 5 0 R]");
    const auto full = ink.Make({1});
    const auto& named = dynamic_cast<const Renderer::ColourNamed&>(*full);
    EXPECT_EQ(named.name, "PANTONE Orange");
    EXPECT_TRUE(named.isSpot);
    EXPECT_EQ(named.alternative, Renderer::ColourRGB::Create(1, 0.5f, 0, 1, {}));
    EXPECT_EQ(ink.Make({0.999}), full);
    EXPECT_EQ(ink.Make({7}), full);

    const auto half = ink.Make({0.5});
    const auto& plain = dynamic_cast<const Renderer::ColourRGB&>(*half);
    EXPECT_EQ(plain.pixel, Raster::PixelRgbF(1, 0.75f, 0.5f, 1));
    EXPECT_EQ(plain.tint, 0.5);
    EXPECT_EQ(plain.name, "");
    EXPECT_EQ(ink.space->MakeDefaultColour()->tint, 0);
    EXPECT_EQ(ink.space->GetFormat(), 0);
    EXPECT_TRUE(ink.space->IsSpecial());
    EXPECT_THAT(ink.GetErrors(), IsEmpty());
}

TEST(MultitoneColourSpaceTest, MixesSeveralInksThroughTheTransform)
{
    const Inks two("[/DeviceN [/Orange /Green] /DeviceRGB 5 0 R << /Subtype /DeviceN >>]");
    EXPECT_EQ(two.space->GetComponentCount(), 2);
    EXPECT_EQ(two.Make({0.25, 1}), Renderer::ColourRGB::Create(1, 0.25f, 0, 1, {}));
    EXPECT_EQ(two.Make({1, 1})->tint, 1);

    // The attributes may be a reference; nothing but ink that leaves no mark is black, at any tint.
    const Inks none("[/DeviceN [/None /None] /DeviceRGB 5 0 R 6 0 R]");
    EXPECT_EQ(none.Make({0, 0}), MakeCmyk(0, 0, 0, 255));
    EXPECT_EQ(none.Make({1, 0.5}), none.Make({0, 0}));

    const Inks lab("[/DeviceN [/Spot /None] [/Lab << /WhitePoint [0.95 1 1.09] >>] 5 0 R]");
    EXPECT_TRUE(dynamic_cast<const Renderer::ColourLAB*>(lab.Make({0, 1}).Get()));
    for (const Inks* inks : {&two, &none, &lab})
        EXPECT_THAT(inks->GetErrors(), IsEmpty());
}

TEST(MultitoneColourSpaceTest, RefusesMoreInksThanAnyPressHas)
{
    for (const int count : {32, 2000}) {
        std::string names;
        for (int i = 0; i < count; ++i)
            names += "/I" + std::to_string(i) + " ";
        const Ink ink("[/DeviceN [" + names + "] /DeviceRGB 5 0 R]");
        EXPECT_EQ(ink.space->GetComponentCount(), count == 32 ? 32 : 0);
        EXPECT_EQ(ink.GetErrors().empty(), count == 32);
    }
}

TEST(MultitoneColourSpaceTest, StaysUsableWhenDamaged)
{
    const struct
    {
        const char* definition;
        bool isSpace;
        bool hasError;
    } rows[] = {
        {"[/Separation /A /Pattern 5 0 R]", false, true},
        // The definition breaks off behind an array, and so at a closing bracket: there is a space, without a
        // transform.
        {"[/Separation /A [/Indexed /DeviceRGB 0 <000000>] 5 0 R]", true, true},
        {"[/Separation /A [/Separation /B /DeviceRGB 5 0 R] 5 0 R]", true, true},
        {"[/Separation /A]", true, true},
        {"[/Separation /A /X 5 0 R]", false, true},
        {"[/Separation /A /DeviceRGB 5 0 R /Junk]", false, true},
        {"[/Separation]", false, true},
        // A transform that is none gives zeros.
        {"[/Separation /A /DeviceRGB 99 0 R]", true, true},
        {"[/DeviceN [] /DeviceRGB 5 0 R]", true, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.definition);
        const Ink ink(row.definition);
        EXPECT_EQ(ink.space != nullptr, row.isSpace);
        EXPECT_TRUE(!ink.space || ink.space->MakeDefaultColour());
        EXPECT_EQ(!ink.GetErrors().empty(), row.hasError);
    }
}

using testing::ElementsAre;

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

struct Lab : OneSpace
{
    explicit Lab(const std::string& entries) : OneSpace("[/Lab << " + entries + " >>]") {}

    Raster::PixelLab16 MakePixel(double lightness, double a, double b) const
    {
        return dynamic_cast<const Renderer::ColourLAB&>(*Make({lightness, a, b})).pixel;
    }
};

TEST(LabColourSpaceTest, ReadsItsRange)
{
    const std::string white = "/WhitePoint [0.9505 1 1.089] ";
    const std::vector<double> standard{-100, 100, -100, 100};
    const struct
    {
        std::string entries;
        std::vector<double> range;
        bool hasError;
    } rows[] = {
        {white, standard, false},
        {white + "/Range [-128 127 0 1]", {-128, 127, 0, 1}, false},
        {white + "/Range [-128 127 0 0.5]", standard, true},
        {white + "/Range [5 -5 -100 100]", standard, true},
        {white + "/Range [-100 100]", standard, true},
        {"/WhitePoint [0.9505 1] /Range [-9 9 -9 9]", {}, true},
        {"", {}, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.entries);
        const Lab lab(row.entries);
        EXPECT_EQ(dynamic_cast<const LabColourSpace&>(*lab.space).range, row.range);
        EXPECT_EQ(!lab.GetErrors().empty(), row.hasError);
        EXPECT_EQ(lab.space->GetICCProfile() != nullptr, !row.range.empty());
        // One without a range takes the usual one for its colours.
        EXPECT_EQ(lab.MakePixel(0, 200, -200).a, 65535);
        EXPECT_EQ(lab.MakePixel(0, 200, -200).b, 0);
    }
}

TEST(LabColourSpaceTest, MapsRangesOntoChannels)
{
    const Lab lab("/WhitePoint [0.9505 1 1.089] /Range [-128 127 -50 150]");
    EXPECT_EQ(lab.MakePixel(50, 0, 50), Raster::PixelLab16(32768, 32896, 32768, 65535));
    // White stays white and black stays black.
    for (const double white : {100.0, 100.01, 101.0, 200.0, 1e300})
        EXPECT_EQ(lab.MakePixel(white, 0, 0).lightness, 65535) << white;
    for (const double black : {0.0, -0.01, -20.0, -1e300, std::nan("")})
        EXPECT_EQ(lab.MakePixel(black, 0, 0).lightness, 0) << black;

    const auto values = dynamic_cast<const Renderer::ColourLAB&>(*lab.Make({50, 20, 70})).GetLab();
    EXPECT_NEAR(values.lightness, 50, 0.01);
    EXPECT_NEAR(values.a, 20, 0.01);
    EXPECT_NEAR(values.b, 70, 0.01);
    EXPECT_THAT(lab.space->GetDefaultDecodeVec(8), ElementsAre(0, 1, 0, 1, 0, 1));
    EXPECT_THAT(lab.GetErrors(), IsEmpty());
}

} // namespace
} // namespace Quillet
