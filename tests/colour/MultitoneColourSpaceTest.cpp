#include "colour/MultitoneColourSpace.h"

#include "colour/FunctionFile.h"
#include "colour/Spaces.h"

#include <Renderer/ColourCMYK.h>
#include <Renderer/ColourLAB.h>
#include <Renderer/ColourNamed.h>
#include <Renderer/ColourRGB.h>
#include <Renderer/ColourRegistration.h>

#include <gmock/gmock.h>

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

} // namespace
} // namespace Quillet
