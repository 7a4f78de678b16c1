#include "colour/LabColourSpace.h"

#include "colour/Spaces.h"

#include <Renderer/ColourLAB.h>

#include <gmock/gmock.h>

#include <cmath>

namespace Quillet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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
