#include "colour/LabColourSpace.h"

#include "document/Parser.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <Renderer/ColourLAB.h>

#include <gmock/gmock.h>

#include <cmath>

namespace Quillet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A space from the dictionary in object 5.
struct Lab
{
    explicit Lab(const std::string& dictionary)
        : document(MakePagePdf("", {.objects = {dictionary}})),
          space(Kernel::MakeCounted<const LabColourSpace>(document.GetRef(5)))
    {}

    Raster::PixelLab16 Make(double lightness, double a, double b) const
    {
        const auto colour = space->MakeColour(Colour({lightness, a, b}));
        return dynamic_cast<const Renderer::ColourLAB&>(*colour).pixel;
    }

    TestDocument document;
    Kernel::Counted<const LabColourSpace> space;
};

TEST(LabColourSpaceTest, ReadsItsRange)
{
    const std::vector<double> standard{-100, 100, -100, 100};
    struct Case
    {
        const char* dictionary;
        std::vector<double> range;
        bool hasError;
    };
    const Case cases[] = {
        {"<< /WhitePoint [0.9505 1 1.089] >>", standard, false},
        {"<< /WhitePoint [0.9505 1 1.089] /Range [-128 127 0 1] >>", {-128, 127, 0, 1}, false},
        {"<< /WhitePoint [0.9505 1 1.089] /Range [-128 127 0 0.5] >>", standard, true},
        {"<< /WhitePoint [0.9505 1 1.089] /Range [5 -5 -100 100] >>", standard, true},
        {"<< /WhitePoint [0.9505 1 1.089] /Range [-100 100] >>", standard, true},
        {"<< /WhitePoint [0.9505 1] /Range [-9 9 -9 9] >>", {}, true},
        {"<< >>", {}, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.dictionary);
        const Lab lab(c.dictionary);
        EXPECT_EQ(lab.space->range, c.range);
        EXPECT_EQ(!lab.document.GetErrors().empty(), c.hasError);
        EXPECT_EQ(static_cast<bool>(lab.space->GetICCProfile()), !c.range.empty());
        // One without a range takes the usual one for its colours.
        EXPECT_EQ(lab.Make(0, 200, -200).a, 65535);
        EXPECT_EQ(lab.Make(0, 200, -200).b, 0);
    }
}

TEST(LabColourSpaceTest, MapsRangesOntoChannels)
{
    const Lab lab("<< /WhitePoint [0.9505 1 1.089] /Range [-128 127 -50 150] >>");
    const Raster::PixelLab16 middle = lab.Make(50, 0, 50);
    EXPECT_EQ(middle.lightness, 32768);
    EXPECT_EQ(middle.a, 32896);
    EXPECT_EQ(middle.b, 32768);
    EXPECT_EQ(middle.alpha, 65535);
    // White stays white and black stays black.
    for (const double white : {100.0, 100.01, 101.0, 200.0, 1e300})
        EXPECT_EQ(lab.Make(white, 0, 0).lightness, 65535) << white;
    for (const double black : {0.0, -0.01, -20.0, -1e300, std::nan("")})
        EXPECT_EQ(lab.Make(black, 0, 0).lightness, 0) << black;

    const auto colour = lab.space->MakeColour(Colour({50, 20, 70}));
    const auto values = dynamic_cast<const Renderer::ColourLAB&>(*colour).GetLab();
    EXPECT_NEAR(values.lightness, 50, 0.01);
    EXPECT_NEAR(values.a, 20, 0.01);
    EXPECT_NEAR(values.b, 70, 0.01);
    EXPECT_THAT(lab.space->GetDefaultDecodeVec(8), ElementsAre(0, 1, 0, 1, 0, 1));
    EXPECT_THAT(lab.document.GetErrors(), IsEmpty());
}

} // namespace
} // namespace Quillet
