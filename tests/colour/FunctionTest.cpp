#include "colour/FunctionFile.h"

#include "colour/DeviceGrayColourSpace.h"
#include "colour/SampledFunctionN.h"
#include "colour/StitchingFunction.h"
#include "document/Limits.h"
#include "support/Repeat.h"

#include <Quillet/Budget.h>
#include <Renderer/ColourGrayscale.h>

#include <gmock/gmock.h>

#include <cmath>

namespace Quillet {
namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pointwise;

/// A function of type 0, of bytes.
std::string MakeSampled(const std::string& bytes, const std::string& entries, int bits = 8)
{
    return PdfBuilder::MakeStream(bytes, "/FunctionType 0 /BitsPerSample " + std::to_string(bits) + " " + entries);
}

TEST(FunctionTest, SaysWhatIsNoFunction)
{
    const std::string unit = "/Domain [0 1] /Range [0 1] ";
    const std::string square = "/Domain [0 1 0 1] /Range [0 1] ";
    const std::string nine = "/Domain [" + Repeat("0 1 ", 9) + "] /Range [0 1] /Size [" + Repeat("1 ", 9) + "]";
    const std::pair<std::string, int> rows[] = {
        {"<< /FunctionType 1 >>", Error::UnimplementedFill},
        {"<< /FunctionType 5 >>", Error::UnimplementedFill},
        {"/Identity", Error::General},
        // Powers that negative numbers or zero do not have, or nearly so.
        {MakePower("/N 1", "-1 1"), Error::General},
        {MakePower("/N 2.0000005", "-1 1"), Error::General},
        {MakePower("/N -0.5"), Error::General},
        {MakePower("/C0 [0 0 0] /N 1"), Error::General},
        {MakePower("/Range [0 1 0 1] /N 1"), Error::General},
        {MakePower("/N 1", "0 1 0 1"), Error::General},
        {MakePower("/N 1", "1 1"), Error::General},
        {MakeSampled("ab", "/Domain [0] /Range [0 1] /Size [2]"), Error::General},
        {MakeSampled("ab", "/Domain [0 1 0] /Range [0 1] /Size [2]"), Error::General},
        {MakeSampled("ab", "/Domain [0 1] /Size [2]"), Error::General},
        {MakeSampled("abcdefgh", unit + "/Size [2]", 32), Error::General},
        {MakeSampled("abcdefgh", unit + "/Size [2]", 33), Error::General},
        {MakeSampled("ab", unit + "/Size [2]", 0), Error::General},
        {MakeSampled("ab", unit + "/Size [2]", -8), Error::General},
        {MakeSampled("", unit + "/Size [2]"), Error::General},
        {MakeSampled("a", unit + "/Size [2]"), Error::General},
        {MakeSampled("abcd", unit + "/Size [2 2]"), Error::General},
        {MakeSampled("abcd", square + "/Size [-2 -2]"), Error::General},
        {MakeSampled("abcd", square + "/Size [2147483647 2147483647]"), Error::General},
        {MakeSampled("ab", unit + "/Size [2] /Decode [0]"), Error::General},
        {MakeSampled("a", nine), Error::General},
        {MakeStitched("", "/Bounds [] /Encode []"), Error::General},
        // A function that is its own part.
        {MakeStitched("5 0 R 5 0 R", "/Bounds [0.5] /Encode [0 1 0 1]"), Error::General},
    };
    for (const auto& [body, error] : rows) {
        SCOPED_TRACE(body);
        const FunctionFile made(body);
        EXPECT_TRUE(made.function->IsDefault());
        EXPECT_THAT(made.GetErrors(), testing::Contains(error));
        EXPECT_EQ(Function::Make(made.GetRef()), made.function);
    }
}

TEST(FunctionTest, GivesInputsHeldToTheRangeForWhatIsNone)
{
    const FunctionFile made("<< /FunctionType 1 /Domain [0 1] /Range [0 1 0.25 0.5 -1] >>");
    EXPECT_THAT(made.Call({0.75}, 4), ElementsAre(0.75, 0.5, 0, 0));
    EXPECT_THAT(made.Call({2, -2, 7}, 3), ElementsAre(1, 0.25, 0));
    EXPECT_THAT(made.Call({}, 2), ElementsAre(0, 0.25));
    const FunctionFile none("<< >>");
    EXPECT_TRUE(none.function->IsDefault());
    EXPECT_THAT(none.Call({0.5}, 2), ElementsAre(0, 0));
    EXPECT_THAT(none.GetErrors(), IsEmpty());
}

TEST(FunctionTest, RaisesToPowers)
{
    const struct
    {
        std::string body;
        double in;
        std::vector<double> out;
    } rows[] = {
        {MakePower("/N 1"), 0.25, {0.25}},
        {MakePower(""), 7, {1}},
        {MakePower("/C0 [1 0 0] /C1 [0 1 0.5] /N 2"), 0.5, {0.75, 0.25, 0.125}},
        {MakePower("/C0 [1 0] /C1 [3 10] /Range [0 2 0 4] /N 1"), 0.75, {2, 4}},
        {MakePower("/N 0"), 0, {1}},
        {MakePower("/C0 [0] /C1 [1] /N -0.5", "1 4"), 4, {0.5}},
        // Not whole, so a negative domain passes; where the power has no value, neither has the function.
        {MakePower("/N 0.5", "-1 1"), 0.25, {0.5}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.body);
        const FunctionFile made(row.body);
        ASSERT_TRUE(made.function->IsValid());
        EXPECT_THAT(made.Call({row.in}, row.out.size()), Pointwise(DoubleNear(1e-12), row.out));
        EXPECT_THAT(made.GetErrors(), IsEmpty());
    }
    const FunctionFile root(MakePower("/N 0.5", "-1 1"));
    EXPECT_TRUE(std::isnan(root.Call({-1}, 1)[0]));
    EXPECT_FALSE(root.function->IsLinear());
    // Other counts than its own are answered as by a default function.
    EXPECT_THAT(root.Call({0.5}, 2), ElementsAre(0, 0));
    EXPECT_THAT(root.Call({0.5, 0.5}, 1), ElementsAre(0));
}

TEST(FunctionTest, ReadsSamplesFromTheLowBitsUp)
{
    using namespace std::string_literals;
    const struct
    {
        int bits;
        std::string bytes;
        std::vector<double> values;
    } rows[] = {
        {1, "\x35", {1, 0, 1, 0}},
        {2, "\xd8", {0, 2, 1, 3}},
        {4, "\x21\x43", {1, 2, 3, 4}},
        {8, "\x01\x02\x03\xff", {1, 2, 3, 255}},
        // Two bytes from the one in which the sample starts, shifted by where it starts in it.
        {12, "\x12\x34\x56\x78\x9a\xbc", {0x234, 0x345, 0x89a & 0xfff, 0x9ab}},
        {16, "\x01\x02\xff\xfe\x00\x01\x00\x00"s, {0x102, 0xfffe, 1, 0}},
        {24, "\x01\x02\x03\x00\x00\x04\x00\x00\x05\x00\x00\x06"s, {0x10203, 4, 5, 6}},
    };
    for (const auto& row : rows) {
        const std::string range = "/Range [0 " + std::to_string((1 << row.bits) - 1) + "] ";
        const FunctionFile made(MakeSampled(row.bytes, "/Domain [0 3] /Size [4] " + range, row.bits));
        ASSERT_TRUE(Kernel::DynamicCast<const SampledFunctionN>(made.function));
        std::vector<double> values;
        for (int i = 0; i < 4; ++i)
            values.push_back(made.Call({static_cast<double>(i)}, 1)[0]);
        EXPECT_THAT(values, Pointwise(DoubleNear(1e-6), row.values)) << row.bits;
    }
}

TEST(FunctionTest, InterpolatesBetweenSamples)
{
    using namespace std::string_literals;
    const std::string eight = "/Domain [" + Repeat("0 1 ", 8) + "] /Range [0 1] /Size [" + Repeat("2 ", 8) + "]";
    const FunctionFile
        // Two inputs, the first runs fastest: f(0,0) = 0, f(1,0) = 100, f(0,1) = 200, f(1,1) = 40; a second output
        // of 255.
        plane(MakeSampled("\x00\xff\x64\xff\xc8\xff\x28\xff"s,
                          "/Domain [0 1 0 1] /Range [0 255 0 1] /Decode [0 255 0 1] /Size [2 2]")),
        // Encoded backwards, and decoded to more than the range lets through.
        encoded(MakeSampled("\x00\x80\xff"s, "/Domain [-1 1] /Range [0 1] /Encode [2 0] /Decode [0 2] /Size [3]")),
        // Long enough for its inputs, too short for its outputs: what is not there is 0.
        truncated(MakeSampled("\xff\xff", "/Domain [0 1] /Range [0 1 0 1] /Size [2]")),
        corners(MakeSampled(std::string(255, '\0') + '\xff', eight));
    const struct
    {
        const FunctionFile& made;
        std::vector<double> in;
        std::vector<double> out;
    } rows[] = {
        {plane, {0.5, 0}, {50, 1}},
        {plane, {0.5, 0.5}, {85, 1}},
        {plane, {9, -9}, {100, 1}},
        {encoded, {-1}, {1}},
        {encoded, {0.5}, {128 / 255.0}},
        {encoded, {1}, {0}},
        {truncated, {0}, {1, 1}},
        {truncated, {1}, {0, 0}},
        {corners, std::vector<double>(8, 0.5), {1 / 256.0}},
    };
    for (const auto& row : rows) {
        EXPECT_TRUE(row.made.function->IsValid());
        EXPECT_THAT(row.made.Call(row.in, row.out.size()), Pointwise(DoubleNear(1e-9), row.out));
    }
}

TEST(FunctionTest, StitchesParts)
{
    const auto stitch = [](const std::string& parts, const std::string& entries) {
        return FunctionFile(MakeStitched(parts, entries),
                            {MakePower("/C0 [0] /C1 [10] /N 1"), MakePower("/C0 [20] /C1 [30] /N 1"),
                             MakePower("/C0 [0 0] /C1 [1 1] /N 1")});
    };
    const FunctionFile two = stitch("6 0 R 7 0 R", "/Bounds [0.25] /Encode [0 1 1 0]");
    const std::pair<double, double> values[] = {{0.125, 5}, {0.25, 30}, {1, 20}, {7, 20}};
    for (const auto& [in, out] : values)
        EXPECT_THAT(two.Call({in}, 1), ElementsAre(out)) << in;
    EXPECT_FALSE(two.function->IsLinear());
    EXPECT_TRUE(stitch("6 0 R", "/Bounds [] /Encode [0 1]").function->IsLinear());
    EXPECT_THAT(stitch("6 0 R", "/Bounds [] /Encode [0 1] /Range [0 4]").Call({1}, 1), ElementsAre(4));

    const struct
    {
        const char* parts;
        const char* entries;
        std::vector<double> bounds;
    } rows[] = {
        {"6 0 R 7 0 R 6 0 R", "/Bounds [0.5 0.5] /Encode [0 1 0 1 0 1]", {0, 0.5, 1}},
        // Of two empty parts in a row the second stays.
        {"6 0 R 7 0 R 7 0 R 6 0 R", "/Bounds [0.5 0.5 0.5] /Encode [0 1 0 1 0 1 0 1]", {0, 0.5, 0.5, 1}},
        {"6 0 R 7 0 R 6 0 R", "/Bounds [0 1] /Encode [0 1 0 1 0 1]", {0, 1}},
        {"6 0 R 7 0 R", "/Bounds [0.5 0.7] /Encode [0 1 0 1]", {}},
        {"6 0 R 7 0 R 6 0 R", "/Bounds [0.7 0.5] /Encode [0 1 0 1 0 1]", {}},
        {"6 0 R 8 0 R", "/Bounds [0.5] /Encode [0 1 0 1]", {}},
        {"6 0 R 99 0 R", "/Bounds [0.5] /Encode [0 1 0 1]", {}},
        {"6 0 R 7 0 R", "/Bounds [0.5] /Encode [0 1 0]", {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.parts) + row.entries);
        const FunctionFile made = stitch(row.parts, row.entries);
        const auto stitching = Kernel::DynamicCast<const StitchingFunction>(made.function);
        ASSERT_EQ(stitching != nullptr, !row.bounds.empty());
        EXPECT_EQ(stitching ? stitching->bounds : std::vector<double>(), row.bounds);
        EXPECT_TRUE(std::isfinite(made.Call({0.5}, 1)[0]));
    }
}

TEST(FunctionTest, EndsWhateverFunctionsConsistOf)
{
    // Each of many functions has one part, the next; and each is asked for from the last on, so that none goes deep.
    constexpr int c_count = 20'000;
    std::vector<std::string> chain{MakePower("/N 1")};
    for (int i = 1; i < c_count; ++i)
        chain.push_back(MakeStitched(std::to_string(5 + i) + " 0 R", "/Bounds [] /Encode [0 1]"));
    const FunctionFile made("<< >>", chain);
    int validCount = 0;
    for (int i = 0; i < c_count; ++i)
        validCount += Function::Make(made.GetRef(6 + i))->IsValid() ? 1 : 0;
    EXPECT_GT(validCount, 60);
    EXPECT_LT(validCount, c_count);

    constexpr int c_depth = 2000;
    const FunctionFile nested(Repeat("<< /FunctionType 3 /Domain [0 1] /Functions [", c_depth) + MakePower("/N 1") +
                              Repeat("] /Bounds [] /Encode [0 1] >>", c_depth));
    EXPECT_TRUE(nested.function->IsDefault());

    // A detour: 5 needs 6 and 6 needs 5, twice each.
    const std::string entries = "/Bounds [0.5] /Encode [0 1 0 1]";
    const FunctionFile detour(MakeStitched("6 0 R 6 0 R", entries), {MakeStitched("5 0 R 5 0 R", entries)});
    EXPECT_TRUE(detour.function->IsDefault());
}

using Renderer::ColourPosition;

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
