#include "colour/ColourSpaceFactory.h"

#include "colour/DeviceCmykColourSpace.h"
#include "colour/DeviceGrayColourSpace.h"
#include "colour/DeviceRgbColourSpace.h"
#include "colour/IccBasedColourSpace.h"
#include "colour/IndexedColourSpace.h"
#include "colour/PatternColourSpace.h"
#include "colour/RasterFormatPicker.h"
#include "colour/Spaces.h"
#include "colour/TestProfile.h"
#include "document/Dictionary.h"
#include "document/DocumentState.h"
#include "document/Limits.h"
#include "support/PdfBuilder.h"
#include "support/Repeat.h"
#include "support/TestDocument.h"

#include <Kernel/Trace.h>

#include <gmock/gmock.h>

namespace Quillet {
namespace {

using testing::IsEmpty;

TEST(ColourSpaceFactoryTest, ReadsDevicesInEveryForm)
{
    Spaces spaces("/A /DeviceCMYK /B [/DeviceCMYK] /C 5 0 R /D 6 0 R /E [/RGB] /F /G /H /C /I [/H]",
                  {"[/DeviceCMYK]", "/DeviceGray"});
    for (const char* name : {"A", "B", "C", "H", "I"})
        EXPECT_EQ(spaces.Get(name), spaces.factory.deviceCmyk) << name;
    EXPECT_EQ(spaces.Get("D"), spaces.factory.deviceGray);
    EXPECT_EQ(spaces.Get("E"), spaces.factory.deviceRgb);
    EXPECT_EQ(spaces.Get("F"), spaces.factory.deviceGray);
    EXPECT_EQ(spaces.factory.Make(spaces.resources, 4), spaces.factory.deviceCmyk);
    EXPECT_EQ(spaces.factory.Make(spaces.resources, 3), spaces.factory.deviceRgb);
    for (const int count : {-1, 0, 1, 2, 5})
        EXPECT_EQ(spaces.factory.Make(spaces.resources, count), spaces.factory.deviceGray) << count;
    EXPECT_THAT(spaces.GetErrors(), IsEmpty());
}

TEST(ColourSpaceFactoryTest, GivesNullForWhatIsNoSpace)
{
    const std::pair<const char*, std::vector<int>> rows[] = {
        {"[/DeviceRGB /Junk]", {Error::General}},
        {"[/CalRGB << /Gamma [1 1 1] >> /Junk]", {Error::General}},
        {"7", {Error::General}},
        {"/Unknown", {}},
        {"[/Unknown]", {}},
        {"/Indexed", {}},
        {"/ICCBased", {}},
        {"/Separation", {}},
        {"/Lab", {}},
        {"[/I /DeviceRGB 0 <000000>]", {Error::General}},
        // Spaces that are defined through themselves.
        {"/X", {}},
        {"[/X]", {}},
        {"[/Indexed /X 0 <00>]", {Error::General, Error::General}},
        {"/Y /Y /X", {}},
    };
    for (const auto& [definition, errors] : rows) {
        const OneSpace none(definition);
        EXPECT_FALSE(none.space) << definition;
        EXPECT_EQ(none.GetErrors(), errors) << definition;
    }
}

TEST(ColourSpaceFactoryTest, PutsDefaultsInTheDevicesPlace)
{
    Spaces spaces("/DefaultRGB [/ICCBased 5 0 R] /DefaultCMYK /DeviceGray /A [/Indexed /DeviceRGB 0 <000000>]",
                  {PdfBuilder::MakeStream(MakeTestProfile(), "/N 3 /Alternate /DeviceRGB")});
    const auto rgb = Kernel::DynamicCast<const IccBasedColourSpace>(spaces.factory.MakeDeviceRgb(spaces.resources));
    ASSERT_TRUE(rgb);
    // Within the look-up the device is itself.
    EXPECT_EQ(rgb->alternate, spaces.factory.deviceRgb);
    EXPECT_EQ(spaces.factory.MakeDeviceRgb(spaces.resources), rgb);
    EXPECT_EQ(spaces.factory.MakeDeviceRgb(nullptr), spaces.factory.deviceRgb);
    EXPECT_EQ(spaces.factory.Make(spaces.resources, 4), spaces.factory.deviceGray);
    EXPECT_EQ(spaces.factory.MakeDeviceGray(spaces.resources), spaces.factory.deviceGray);
    const auto indexed = Kernel::DynamicCast<const IndexedColourSpace>(spaces.Get("A"));
    ASSERT_TRUE(indexed);
    EXPECT_EQ(indexed->base, rgb);
    EXPECT_THAT(spaces.GetErrors(), IsEmpty());
}

TEST(ColourSpaceFactoryTest, TakesCalibratedSpacesForDevices)
{
    Spaces spaces("/DefaultRGB /DeviceGray /A [/CalRGB << /Gamma [2.2 2.2 2.2] >>] /B [/CalRGB 5 0 R] "
                  "/C [/CalGray << /A << /B [1] >> >>]",
                  {"<< /Gamma [1 1 1] >>"});
    std::string trace;
    Kernel::SetTraceSink([&](std::string_view message) { trace += message; });
    EXPECT_EQ(spaces.Get("A"), spaces.factory.deviceRgb);
    EXPECT_EQ(spaces.Get("B"), spaces.factory.deviceRgb);
    EXPECT_EQ(spaces.Get("C"), spaces.factory.deviceGray);
    Kernel::SetTraceSink({});
    EXPECT_EQ(trace, "Quillet: CalRGB\nQuillet: CalRGB\nQuillet: CalGray\n");
    EXPECT_THAT(spaces.GetErrors(), IsEmpty());

    const auto parser = Kernel::MakeCounted<Parser>(spaces.resources->GetColourSpaces()->GetRef("A"));
    EXPECT_TRUE(spaces.factory.Make(parser, spaces.resources));
    EXPECT_EQ(parser->tokenType, Token::TokenArrayEnd);
}

TEST(ColourSpaceFactoryTest, CalibratedSpacesWithoutParametersTakeNothingElse)
{
    for (const char* base : {"/CalRGB", "/CalGray", "[/CalRGB]"}) {
        const Spaces spaces(std::string("/A [/Indexed ") + base + " 1 <102030405060>] /B " + base);
        const auto indexed = Kernel::DynamicCast<const IndexedColourSpace>(spaces.Get("A"));
        ASSERT_TRUE(indexed) << base;
        EXPECT_EQ(indexed->base, spaces.Get("B")) << base;
        EXPECT_EQ(indexed->table.size(), 2U) << base;
        EXPECT_THAT(spaces.GetErrors(), IsEmpty()) << base;
    }
}

TEST(ColourSpaceFactoryTest, ReadsProfiledSpacesOnceAndThroughTheirAlternate)
{
    Spaces spaces("/A [/ICCBased 5 0 R] /B [/ICCBased 5 0 R] /C [/ICCBased 6 0 R] /D [/ICCBased 7 0 R] "
                  "/E [/ICCBased 8 0 R] /F [/ICCBased]",
                  {PdfBuilder::MakeStream(MakeTestProfile(), "/N 4"),
                   PdfBuilder::MakeStream(MakeTestProfile(), "/N 3 /Alternate /DeviceGray"),
                   PdfBuilder::MakeStream(MakeTestProfile(), "/N 3 /Alternate [/ICCBased 8 0 R]"),
                   PdfBuilder::MakeStream(MakeTestProfile(), "/N 4 /Alternate [/ICCBased 7 0 R]")});
    const auto a = spaces.Get("A");
    ASSERT_TRUE(a);
    EXPECT_EQ(a, spaces.Get("B"));
    EXPECT_EQ(a->GetFormat(), 3);
    EXPECT_TRUE(a->CanLoadAsCompressedImage());
    EXPECT_FALSE(a->IsSpecial());
    EXPECT_EQ(spaces.Get("C")->GetComponentCount(), 1);
    EXPECT_THAT(spaces.GetErrors(), IsEmpty());
    // A circle of alternates ends in a device; which of the two counts is taken is of no concern.
    ASSERT_TRUE(spaces.Get("D"));
    ASSERT_TRUE(spaces.Get("E"));
    EXPECT_FALSE(spaces.Get("D")->IsSpecial());
    EXPECT_FALSE(spaces.GetErrors().empty());
    spaces.Get("F");
}

TEST(ColourSpaceFactoryTest, WorksThroughTheAlternateOfADamagedProfile)
{
    Spaces spaces("/A [/ICCBased 5 0 R] /B [/ICCBased 6 0 R]",
                  {PdfBuilder::MakeStream("no profile", "/N 4"), PdfBuilder::MakeStream(MakeTestProfile(), "/N 4")});
    const auto damaged = spaces.Get("A");
    ASSERT_TRUE(damaged);
    EXPECT_EQ(spaces.GetErrors(), std::vector<int>{Error::UnimplementedColourProfile});
    EXPECT_FALSE(damaged->GetICCProfile());
    EXPECT_EQ(damaged->GetComponentCount(), 4);
    RasterFormatPicker picker;
    damaged->AddRasterFormats(picker, false);
    EXPECT_EQ(picker.GetFormat(), Raster::Format::Cmyk8);

    // "N" says four, the profile RGB: colours go by the one, images by the other.
    RasterFormatPicker other;
    spaces.Get("B")->AddRasterFormats(other, true);
    EXPECT_EQ(other.GetFormat(), Raster::Format::Rgb8);
    EXPECT_EQ(other.profiles.GetProfileFor(Raster::ColourSpace::Rgb), spaces.Get("B")->GetICCProfile());
    EXPECT_EQ(spaces.Get("B")->MakeDefaultColour()->GetModel(), Raster::ColourSpace::Cmyk);
}

TEST(ColourSpaceFactoryTest, EndsChainsThatAreBuiltOneByOne)
{
    // Each space has the next for its alternate, and each is asked for from the last on.
    constexpr int c_count = 5000;
    std::vector<std::string> objects;
    std::string names;
    for (int i = 0; i < c_count; ++i) {
        objects.push_back(PdfBuilder::MakeStream("", "/N 3 /Alternate [/ICCBased " + std::to_string(6 + i) + " 0 R]"));
        names += "/C" + std::to_string(i) + " [/ICCBased " + std::to_string(5 + i) + " 0 R] ";
    }
    objects.push_back(PdfBuilder::MakeStream("", "/N 3"));
    Spaces spaces(names, objects);
    int spaceCount = 0;
    for (int i = c_count; --i >= 0;) {
        const auto space = spaces.Get("C" + std::to_string(i));
        if (!space) continue;
        ++spaceCount;
        EXPECT_LE(space->nesting, Limits::c_maxDescent);
    }
    // One in so many is refused, and the next starts anew from a device.
    EXPECT_GT(spaceCount, c_count - c_count / 100);
}

TEST(ColourSpaceFactoryTest, EndsDeepNesting)
{
    const OneSpace nested(Repeat("[/Pattern ", 20'000));
    EXPECT_FALSE(nested.space);
    EXPECT_FALSE(nested.GetErrors().empty());
}

TEST(PatternColourSpaceTest, FindsItsUnderlyingSpace)
{
    const struct
    {
        const char* space;
        int componentCount;
        std::vector<int> errors;
    } rows[] = {
        {"/Pattern", 0, {}},
        {"[/Pattern]", 0, {}},
        {"[/Pattern /DeviceCMYK]", 4, {}},
        {"[/Pattern [/DeviceRGB]]", 3, {}},
        {"[/Pattern [/ICCBased 5 0 R]]", 3, {}},
        {"[/Pattern 6 0 R]", 3, {}},
        {"[/Pattern 7 0 R]", 4, {}},
        {"[/Pattern /Other]", 1, {}},
        {"[/Pattern /Unknown]", 0, {Error::General}},
        {"[/Pattern /Pattern]", 0, {Error::General}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.space);
        const OneSpace pattern(std::string(row.space) + " /Other /DeviceGray",
                               {PdfBuilder::MakeStream(MakeTestProfile(), "/N 3"), "[/ICCBased 5 0 R]", "/DeviceCMYK"});
        ASSERT_TRUE(pattern.space);
        EXPECT_TRUE(pattern.space->IsPattern());
        EXPECT_EQ(pattern.space->GetComponentCount(), row.componentCount);
        EXPECT_EQ(pattern.GetErrors(), row.errors);
    }
}

struct Intents
{
    Intents(const std::string& intents, std::vector<std::string> objects)
        : document(MakePagePdf("", {.objects = std::move(objects), .catalog = "/OutputIntents " + intents})),
          factory(*document->GetState().colourSpaceFactory)
    {}

    TestDocument document;
    ColourSpaceFactory& factory;
};

TEST(OutputIntentTest, GivesItsProfileToTheDeviceOfItsModel)
{
    for (const std::string model : {"GRAY", "RGB ", "CMYK", "Lab "}) {
        SCOPED_TRACE(model);
        const Intents intents("[6 0 R]", {PdfBuilder::MakeStream(MakeTestProfile(model), "/N 4"),
                                          "<< /S /GTS_PDFX /DestOutputProfile 5 0 R >>"});
        const auto profile = intents.factory.GetOutputProfile();
        ASSERT_TRUE(profile);
        EXPECT_EQ(intents.factory.outputComponents, 4);
        EXPECT_EQ(intents.factory.deviceGray->GetICCProfile() == profile, model == "GRAY");
        EXPECT_EQ(intents.factory.deviceRgb->GetICCProfile() == profile, model == "RGB ");
        EXPECT_EQ(intents.factory.deviceCmyk->GetICCProfile() == profile, model == "CMYK");
        EXPECT_EQ(intents.document->GetICCProfiles(-1).GetProfileFor(profile->GetColourSpace()), profile);
        EXPECT_THAT(intents.document.GetErrors(), testing::IsEmpty());
    }
}

TEST(OutputIntentTest, TakesTheFirstThatGivesAProfile)
{
    const std::string good = PdfBuilder::MakeStream(MakeTestProfile("CMYK"), "/N 4");
    const std::string bad = PdfBuilder::MakeStream("no profile", "/N 3");
    const struct
    {
        const char* intents;
        bool hasProfile;
        std::vector<int> errors;
    } rows[] = {
        // The second is not opened: it would raise something.
        {"[<< /DestOutputProfile 5 0 R >> << /DestOutputProfile 6 0 R >>]", true, {}},
        {"[<< /DestOutputProfile 6 0 R >> << /DestOutputProfile 5 0 R >>]", true, {Error::UnimplementedColourProfile}},
        {"[<< /DestOutputProfile 6 0 R >>]", false, {Error::UnimplementedColourProfile}},
        {"[<< /OutputConditionIdentifier (No such condition) >>]", false, {}},
        {"[]", false, {}},
        {"7", false, {Error::General}},
        {"null", false, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.intents);
        const Intents intents(row.intents, {good, bad});
        EXPECT_TRUE(intents.document.isOpen);
        EXPECT_EQ(static_cast<bool>(intents.factory.GetOutputProfile()), row.hasProfile);
        EXPECT_EQ(intents.document.GetErrors(), row.errors);
    }
}

TEST(OutputIntentTest, IsForgottenWithItsFile)
{
    Intents intents("[<< /DestOutputProfile 5 0 R >>]", {PdfBuilder::MakeStream(MakeTestProfile("CMYK"))});
    ASSERT_TRUE(intents.factory.GetOutputProfile());
    const std::string plain = MakePagePdf("");
    ASSERT_TRUE(intents.document->OpenMemory(plain.data(), plain.size()));
    EXPECT_FALSE(intents.factory.GetOutputProfile());
    EXPECT_FALSE(intents.factory.deviceCmyk->GetICCProfile());
}

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
