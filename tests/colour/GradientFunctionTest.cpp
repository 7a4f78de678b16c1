#include "colour/ColourSpaceFactory.h"
#include "colour/DeviceGrayColourSpace.h"
#include "colour/DeviceRgbColourSpace.h"
#include "colour/Function.h"
#include "document/Limits.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <Renderer/ColourCMYK.h>
#include <Renderer/ColourGrayscale.h>

#include <gmock/gmock.h>

namespace Quillet {
namespace {

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

struct Ramp
{
    explicit Ramp(std::vector<std::string> objects) : document(MakePagePdf("", {.objects = std::move(objects)})) {}

    std::vector<Renderer::ColourPosition> MakeStops(double t0 = 0, double t1 = 1)
    {
        return Function::Make(document.GetRef(5))->AsGradient(space, t0, t1)->stops;
    }

    std::vector<double> MakePositions()
    {
        std::vector<double> positions;
        for (const auto& stop : MakeStops())
            positions.push_back(stop.position);
        return positions;
    }

    TestDocument document;
    Kernel::Counted<const ColourSpace> space = Kernel::MakeCounted<const DeviceGrayColourSpace>();
};

std::string Power(double n)
{
    return "<< /FunctionType 2 /Domain [0 1] /N " + std::to_string(n) + " >>";
}

Kernel::Consolidated<Renderer::Colour> Gray(double gray)
{
    return Renderer::ColourGrayscale::Create(gray, 1, 1, {});
}

TEST(GradientFunctionTest, LinearFunctionsHaveTwoStops)
{
    Ramp power({Power(1)});
    EXPECT_THAT(power.MakeStops(0, 0.5),
                ElementsAre(Renderer::ColourPosition{Gray(0), 0}, Renderer::ColourPosition{Gray(0.5), 1}));
    EXPECT_EQ(power.MakeStops(0.75, 0.25)[0].colour, Gray(0.75));
    Ramp samples({PdfBuilder::MakeStream(std::string("\x00\xff", 2),
                                         "/FunctionType 0 /Domain [0 1] /Range [0 1] /Size [2] /BitsPerSample 8")});
    EXPECT_THAT(samples.MakePositions(), ElementsAre(0, 1));
    Ramp none({"<< >>"});
    EXPECT_THAT(none.MakePositions(), ElementsAre(0, 1));
}

TEST(GradientFunctionTest, CurvesHaveAsManyStopsAsTheyNeed)
{
    Ramp square({Power(2)});
    const auto stops = square.MakeStops();
    EXPECT_GT(stops.size(), 2u);
    EXPECT_LT(stops.size(), 33u);
    EXPECT_EQ(stops.back().position, 1);
    EXPECT_EQ(stops.back().colour, Gray(1));
    // A sample d steps behind a stop is d / 1024 off the straight way to the next sample: the 21st is the first that
    // is 0.02 off, and from there on none is.
    EXPECT_THAT(square.MakePositions(), ElementsAre(0, 21 / 32.0, 1));
    EXPECT_EQ(stops[1].colour, Gray(21 * 21 / 1024.0));
    EXPECT_EQ(stops[1].midpoint, 0.5);
    // Straight, but not said to be so.
    Ramp straight({Power(1 + 1e-9)});
    EXPECT_EQ(straight.MakePositions().size(), 2u);
    square.space = Kernel::MakeCounted<const Clear>();
    EXPECT_THAT(square.MakePositions(), ElementsAre(0, 1));
}

TEST(GradientFunctionTest, PiecesLeaveTheirEndsToTheNext)
{
    // From 0 to 1 and then a jump back to 0.5: the hard edge is two stops, of which the first is the second piece's.
    Ramp ramp({"<< /FunctionType 3 /Domain [0 1] /Functions [6 0 R 7 0 R] /Bounds [0.25] /Encode [0 1 0 1] >>",
               Power(1), "<< /FunctionType 2 /Domain [0 1] /C0 [0.5] /C1 [0] /N 1 >>"});
    EXPECT_THAT(ramp.MakeStops(),
                ElementsAre(Renderer::ColourPosition{Gray(0), 0}, Renderer::ColourPosition{Gray(0.5), 0.25},
                            Renderer::ColourPosition{Gray(0), 1}));
    std::vector<Renderer::ColourPosition> list;
    const auto function = Function::Make(ramp.document.GetRef(5));
    function->AddToColourList(list, ramp.space, 0.5, 1, 0, 1);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0].position, 0.5);
    EXPECT_EQ(list[1].position, 0.625);
}

TEST(GradientFunctionTest, EndsWhereFunctionsShareTheirParts)
{
    // Ten functions, each with ten parts that are all the next one: ten thousand million pieces.
    std::vector<std::string> objects;
    for (int i = 0; i < 10; ++i) {
        const std::string next = std::to_string(6 + i) + " 0 R ";
        std::string functions;
        for (int k = 0; k < 10; ++k)
            functions += next;
        std::string body = "<< /FunctionType 3 /Domain [0 1] /Bounds [.1 .2 .3 .4 .5 .6 .7 .8 .9] "
                           "/Encode [0 1 0 1 0 1 0 1 0 1 0 1 0 1 0 1 0 1 0 1] /Functions [";
        body.append(functions).append("] >>");
        objects.push_back(std::move(body));
    }
    objects.push_back(Power(1));
    Ramp ramp(objects);
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
