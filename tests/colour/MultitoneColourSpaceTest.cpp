#include "colour/MultitoneColourSpace.h"

#include "colour/Function.h"
#include "document/Resources.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <Quillet/Page.h>
#include <Renderer/ColourCMYK.h>
#include <Renderer/ColourLAB.h>
#include <Renderer/ColourNamed.h>
#include <Renderer/ColourRGB.h>
#include <Renderer/ColourRegistration.h>

#include <gmock/gmock.h>

namespace Quillet {
namespace {

using testing::IsEmpty;

/// White at tint 0, orange at tint 1, in RGB.
constexpr const char* c_toOrange = "<< /FunctionType 2 /Domain [0 1] /C0 [1 1 1] /C1 [1 0.5 0] /N 1 >>";

/// The space "/X" of a page; further objects count from 5, of which the first is a tint transform.
struct Inks
{
    explicit Inks(const std::string& definition, std::vector<std::string> objects = {c_toOrange})
        : document(
              MakePagePdf("", {.resources = "/ColorSpace << /X " + definition + " >>", .objects = std::move(objects)})),
          resources(document->GetPage(0)->GetResources()), space(resources->GetColourSpace("X"))
    {}

    Kernel::Consolidated<Renderer::Colour> Make(std::vector<double> tints) const
    {
        return space->MakeColour(Colour(std::move(tints)));
    }

    TestDocument document;
    Kernel::Counted<const Resources> resources;
    Kernel::Counted<const ColourSpace> space;
};

TEST(MultitoneColourSpaceTest, KnowsProcessInksByName)
{
    struct Case
    {
        const char* name;
        Raster::PixelCmyk8 inks;
    };
    const Case cases[] = {
        {"Cyan", Raster::PixelCmyk8(255, 0, 0, 0, 255)},   {"Magenta", Raster::PixelCmyk8(0, 255, 0, 0, 255)},
        {"Yellow", Raster::PixelCmyk8(0, 0, 255, 0, 255)}, {"Black", Raster::PixelCmyk8(0, 0, 0, 255, 255)},
        {"None", Raster::PixelCmyk8(0, 0, 0, 0, 0)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Inks inks(std::string("[/Separation /") + c.name + " /DeviceRGB 5 0 R]");
        ASSERT_TRUE(inks.space);
        EXPECT_EQ(inks.Make({1}), Renderer::ColourCMYK::Create(c.inks, 1.0, 1.0, {}));
        // Weaker, even they go through the file's transform.
        EXPECT_TRUE(dynamic_cast<const Renderer::ColourRGB*>(inks.Make({0.5}).Get()));
    }
    for (const char* name : {"All", "Registration"}) {
        const Inks inks(std::string("[/Separation /") + name + " /DeviceRGB 5 0 R]");
        EXPECT_TRUE(dynamic_cast<const Renderer::ColourRegistration*>(inks.Make({1}).Get())) << name;
    }
}

TEST(MultitoneColourSpaceTest, KeepsTheNameOfASpotAtFullTintOnly)
{
    const Inks inks("[/Separation /PANTONE#20Orange /DeviceRGB 5 0 R]");
    ASSERT_TRUE(inks.space);
    const auto full = inks.Make({1});
    const auto* named = dynamic_cast<const Renderer::ColourNamed*>(full.Get());
    ASSERT_TRUE(named);
    EXPECT_EQ(named->name, "PANTONE Orange");
    EXPECT_TRUE(named->isSpot);
    EXPECT_EQ(named->alternative, Renderer::ColourRGB::Create(1, 0.5f, 0, 1, {}));
    EXPECT_EQ(inks.Make({0.999}), full);
    EXPECT_EQ(inks.Make({7}), full);

    const auto half = inks.Make({0.5});
    const auto* plain = dynamic_cast<const Renderer::ColourRGB*>(half.Get());
    ASSERT_TRUE(plain);
    EXPECT_EQ(plain->pixel, Raster::PixelRgbF(1, 0.75f, 0.5f, 1));
    EXPECT_EQ(plain->tint, 0.5);
    EXPECT_EQ(plain->name, "");
    EXPECT_EQ(inks.space->MakeDefaultColour()->tint, 0);
    EXPECT_EQ(inks.space->GetFormat(), 0);
    EXPECT_TRUE(inks.space->IsSpecial());
    EXPECT_THAT(inks.document.GetErrors(), IsEmpty());
}

TEST(MultitoneColourSpaceTest, MixesSeveralInksThroughTheTransform)
{
    const std::string exchange =
        PdfBuilder::MakeStream("{ exch 0 }", "/FunctionType 4 /Domain [0 1 0 1] /Range [0 1 0 1 0 1]");
    const Inks two("[/DeviceN [/Orange /Green] /DeviceRGB 5 0 R << /Subtype /DeviceN >>]", {exchange});
    ASSERT_TRUE(two.space);
    EXPECT_EQ(two.space->GetComponentCount(), 2);
    EXPECT_EQ(two.Make({0.25, 1}), Renderer::ColourRGB::Create(1, 0.25f, 0, 1, {}));
    EXPECT_EQ(two.Make({1, 1})->tint, 1);

    // The attributes may be a reference; nothing but ink that leaves no mark is black, at any tint.
    const Inks none("[/DeviceN [/None /None] /DeviceRGB 5 0 R 6 0 R]", {exchange, "<< >>"});
    ASSERT_TRUE(none.space);
    const auto black = Renderer::ColourCMYK::Create(Raster::PixelCmyk8(0, 0, 0, 255, 255), 1.0, 1.0, {});
    EXPECT_EQ(none.Make({0, 0}), black);
    EXPECT_EQ(none.Make({1, 0.5}), black);

    const Inks lab("[/DeviceN [/Spot /None] [/Lab << /WhitePoint [0.95 1 1.09] >>] 5 0 R]", {exchange});
    ASSERT_TRUE(lab.space);
    EXPECT_TRUE(dynamic_cast<const Renderer::ColourLAB*>(lab.Make({0, 1}).Get()));
    EXPECT_THAT(two.document.GetErrors(), IsEmpty());
    EXPECT_THAT(none.document.GetErrors(), IsEmpty());
    EXPECT_THAT(lab.document.GetErrors(), IsEmpty());
}

TEST(MultitoneColourSpaceTest, RefusesMoreInksThanAnyPressHas)
{
    const auto make = [](int count) {
        std::string names;
        for (int i = 0; i < count; ++i)
            names += "/I" + std::to_string(i) + " ";
        const Inks inks("[/DeviceN [" + names + "] /DeviceRGB 5 0 R]");
        return std::pair(inks.space->GetComponentCount(), inks.document.GetErrors().empty());
    };
    EXPECT_EQ(make(32), std::pair(32, true));
    EXPECT_EQ(make(2000), std::pair(0, false));
}

TEST(MultitoneColourSpaceTest, StaysUsableWhenDamaged)
{
    struct Case
    {
        const char* definition;
        bool isSpace;
    };
    const Case cases[] = {
        {"[/Separation /A /Pattern 5 0 R]", false},
        // The definition breaks off behind an array, and so at a closing bracket: there is a space, without a
        // transform.
        {"[/Separation /A [/Indexed /DeviceRGB 0 <000000>] 5 0 R]", true},
        {"[/Separation /A [/Separation /B /DeviceRGB 5 0 R] 5 0 R]", true},
        {"[/Separation /A]", true},
        {"[/Separation /A /X 5 0 R]", false},
        {"[/Separation /A /DeviceRGB 5 0 R /Junk]", false},
        {"[/Separation]", false},
        // A transform that is none gives zeros.
        {"[/Separation /A /DeviceRGB 99 0 R]", true},
        {"[/DeviceN [] /DeviceRGB 5 0 R]", true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.definition);
        const Inks inks(c.definition);
        EXPECT_EQ(static_cast<bool>(inks.space), c.isSpace);
        EXPECT_FALSE(c.isSpace && !inks.space->MakeDefaultColour());
        EXPECT_FALSE(inks.document.GetErrors().empty() && std::string(c.definition).find("[]") == std::string::npos);
    }
}

} // namespace
} // namespace Quillet
