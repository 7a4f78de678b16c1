#include "colour/IndexedColourSpace.h"

#include "colour/ColourSpaceFactory.h"
#include "document/DocumentState.h"
#include "document/Resources.h"
#include "document/Parser.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <Renderer/ColourRGB.h>

#include <gmock/gmock.h>

#include <limits>

namespace Quillet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A palette from what stands behind the family name in object 5; further objects count from 6.
struct Palette
{
    explicit Palette(const std::string& parameters, const std::vector<std::string>& objects = {})
        : document(MakeFile(parameters, objects)),
          space(Kernel::MakeCounted<const IndexedColourSpace>(
              MakeParser(document), nullptr,
              Kernel::Counted<const ColourSpaceFactory>(document->GetState().colourSpaceFactory)))
    {}

    static std::string MakeFile(const std::string& parameters, std::vector<std::string> objects)
    {
        objects.insert(objects.begin(), "[" + parameters + "]");
        return MakePagePdf("", {.objects = std::move(objects)});
    }

    static Kernel::Counted<Parser> MakeParser(const TestDocument& document)
    {
        auto parser = Kernel::MakeCounted<Parser>(document.GetRef(5));
        parser->NextToken();
        return parser;
    }

    Kernel::Consolidated<Renderer::Colour> Make(double component) const
    {
        return space->MakeColour(Colour(std::vector<double>{component}));
    }

    TestDocument document;
    Kernel::Counted<const IndexedColourSpace> space;
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
    for (const Palette& palette : {Palette("/DeviceRGB 5 " + hex), Palette("/DeviceRGB 5 6 0 R", {hex})}) {
        EXPECT_EQ(palette.space->GetMaxIndex(), 2);
        EXPECT_EQ(palette.Make(1 / 255.0), MakeRgb(10, 11, 12));
        EXPECT_EQ(palette.Make(4 / 255.0), MakeRgb(0, 0, 0));
        EXPECT_THAT(palette.document.GetErrors(), IsEmpty());
    }
    const Palette stream("/DeviceRGB 5 6 0 R",
                         {PdfBuilder::MakeStream("0102030A0B0CFFFEFD77>", "/Filter /ASCIIHexDecode")});
    EXPECT_EQ(stream.space->GetMaxIndex(), 5);
    EXPECT_EQ(stream.Make(2 / 255.0), MakeRgb(255, 254, 253));
    EXPECT_EQ(stream.Make(5 / 255.0), MakeRgb(0, 0, 0));
    EXPECT_THAT(stream.document.GetErrors(), IsEmpty());
}

TEST(IndexedColourSpaceTest, SelectsByFractionOfTheByteRange)
{
    std::string hex;
    for (int i = 0; i < 256; ++i)
        hex += i == 255 ? "FF0000" : i == 128 ? "00FF00" : "000001";
    const Palette palette("/DeviceRGB 255 <" + hex + ">");
    const auto last = MakeRgb(255, 0, 0);
    EXPECT_EQ(palette.Make(1), last);
    EXPECT_EQ(palette.Make(3), last);
    EXPECT_EQ(palette.Make(1e300), last);
    EXPECT_EQ(palette.Make(0.5), MakeRgb(0, 255, 0));
    for (const double component : {0.0, -7.0, 0.499 / 255, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(palette.Make(component), MakeRgb(0, 0, 1)) << component;
    }
    // A palette of 16 has no entry 255: the base's default colour.
    EXPECT_EQ(Palette("/DeviceRGB 15 <" + hex.substr(0, 96) + ">").Make(3), MakeRgb(0, 0, 0));
}

TEST(IndexedColourSpaceTest, StaysUsableWhenDamaged)
{
    struct Case
    {
        const char* parameters;
        int maxIndex;
        std::size_t errorCount;
    };
    const Case cases[] = {
        {"/DeviceRGB 256 <00>", -1, 1},
        {"/DeviceRGB -1 <00>", -1, 1},
        {"/DeviceRGB 4294967296 <00>", -1, 1},
        {"/DeviceRGB 1 /Name", -1, 0},
        {"/Unknown 1 <00>", -1, 1},
        {"[/Indexed /DeviceRGB 0 <000000>] 1 <0000>", -1, 1},
        {"/DeviceRGB 1 <000000010101> (more) [1 2] << /A 1 >>", 1, 0},
        {"/Pattern 1 <0000>", -1, 0},
        {"", -1, 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.parameters);
        const Palette palette(c.parameters);
        EXPECT_EQ(palette.space->GetMaxIndex(), c.maxIndex);
        EXPECT_EQ(palette.document.GetErrors().size(), c.errorCount);
        EXPECT_TRUE(palette.Make(0.5));
        EXPECT_TRUE(palette.space->MakeDefaultColour());
    }
    EXPECT_EQ(Palette("/DeviceRGB 256 <FFFFFF>").Make(0), MakeRgb(0, 0, 0));
    EXPECT_THAT(Palette("/DeviceRGB 0 <000000>").space->GetDefaultDecodeVec(4), ElementsAre(0, 15));
}

} // namespace
} // namespace Quillet
