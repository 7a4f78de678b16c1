#include "colour/DeviceGrayColourSpace.h"
#include "colour/FunctionFile.h"
#include "document/Limits.h"
#include "support/Repeat.h"

#include <Quillet/Budget.h>
#include <Renderer/ColourGrayscale.h>

#include <gmock/gmock.h>

namespace Quillet {
namespace {

using Renderer::ColourPosition;
using testing::ElementsAre;

/// A space whose colours are all transparent.
class Clear : public DeviceGrayColourSpace
{
public:
    Kernel::Consolidated<Renderer::Colour> MakeColour(const Colour& colour) const override
    {
        return DeviceGrayColourSpace::MakeColour(colour)->MakeWithAlpha(0);
    }
};

struct Ramp : FunctionFile
{
    using FunctionFile::FunctionFile;

    std::vector<ColourPosition> MakeStops(double t0 = 0, double t1 = 1) const
    {
        return function->AsGradient(space, t0, t1)->stops;
    }

    std::vector<double> MakePositions() const
    {
        std::vector<double> positions;
        for (const auto& stop : MakeStops())
            positions.push_back(stop.position);
        return positions;
    }

    Kernel::Counted<const ColourSpace> space = Kernel::MakeCounted<const DeviceGrayColourSpace>();
};

Kernel::Consolidated<Renderer::Colour> Gray(double gray)
{
    return Renderer::ColourGrayscale::Create(gray, 1, 1, {});
}

TEST(GradientFunctionTest, LinearFunctionsHaveTwoStops)
{
    const Ramp power(MakePower("/N 1"));
    EXPECT_THAT(power.MakeStops(0, 0.5), ElementsAre(ColourPosition{Gray(0), 0}, ColourPosition{Gray(0.5), 1}));
    EXPECT_EQ(power.MakeStops(0.75, 0.25)[0].colour, Gray(0.75));
    const Ramp samples(PdfBuilder::MakeStream(std::string("\x00\xff", 2),
                                              "/FunctionType 0 /Domain [0 1] /Range [0 1] /Size [2] /BitsPerSample 8"));
    EXPECT_THAT(samples.MakePositions(), ElementsAre(0, 1));
    EXPECT_THAT(Ramp("<< >>").MakePositions(), ElementsAre(0, 1));
}

TEST(GradientFunctionTest, CurvesHaveAsManyStopsAsTheyNeed)
{
    Ramp square(MakePower("/N 2"));
    const auto stops = square.MakeStops();
    // A sample d steps behind a stop is d / 1024 off the straight way to the next sample: the 21st is the first that
    // is 0.02 off, and from there on none is.
    EXPECT_THAT(stops, ElementsAre(ColourPosition{Gray(0), 0}, ColourPosition{Gray(21 * 21 / 1024.0), 21 / 32.0},
                                   ColourPosition{Gray(1), 1}));
    EXPECT_EQ(stops[1].midpoint, 0.5);
    // Straight, but not said to be so.
    EXPECT_EQ(Ramp(MakePower("/N 1.000000001")).MakePositions().size(), 2u);
    square.space = Kernel::MakeCounted<const Clear>();
    EXPECT_THAT(square.MakePositions(), ElementsAre(0, 1));
}

TEST(GradientFunctionTest, PiecesLeaveTheirEndsToTheNext)
{
    // From 0 to 1 and then a jump back to 0.5: the hard edge is two stops, of which the first is the second piece's.
    const Ramp ramp(MakeStitched("6 0 R 7 0 R", "/Bounds [0.25] /Encode [0 1 0 1]"),
                    {MakePower("/N 1"), MakePower("/C0 [0.5] /C1 [0] /N 1")});
    EXPECT_THAT(ramp.MakeStops(),
                ElementsAre(ColourPosition{Gray(0), 0}, ColourPosition{Gray(0.5), 0.25}, ColourPosition{Gray(0), 1}));
    std::vector<ColourPosition> list;
    ramp.function->AddToColourList(list, ramp.space, 0.5, 1, 0, 1);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0].position, 0.5);
    EXPECT_EQ(list[1].position, 0.625);
}

TEST(GradientFunctionTest, EndsWhereFunctionsShareTheirParts)
{
    // Ten functions, each with ten parts that are all the next one: ten thousand million pieces.
    std::vector<std::string> objects;
    for (int i = 0; i < 10; ++i) {
        objects.push_back(MakeStitched(Repeat(std::to_string(6 + i) + " 0 R ", 10),
                                       "/Bounds [.1 .2 .3 .4 .5 .6 .7 .8 .9] /Encode [" + Repeat("0 1 ", 10) + "]"));
    }
    objects.push_back(MakePower("/N 1"));
    const Ramp ramp(objects[0], {objects.begin() + 1, objects.end()});
    {
        // Once nothing is left, no walk goes on to where the list would be full.
        const Budget::Scope scope(Kernel::MakeCounted<Budget>(500'000), Budget::Share::All, nullptr);
        EXPECT_LT(ramp.MakeStops().size(), 5000U);
        EXPECT_TRUE(scope.WasCut());
    }
    const auto stops = ramp.MakeStops();
    EXPECT_LE(stops.size(), Limits::c_maxGradientStops + 1);
    EXPECT_EQ(stops.back().position, 1);
}

} // namespace
} // namespace Quillet
