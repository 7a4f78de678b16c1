#include "colour/Function.h"

#include "colour/SampledFunctionN.h"
#include "colour/StitchingFunction.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <gmock/gmock.h>

#include <cmath>

namespace Quillet {
namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pointwise;

/// The function in object 5; further objects count from 6.
struct Made
{
    explicit Made(const std::string& body, std::vector<std::string> others = {})
        : document(MakeFile(body, std::move(others))), function(Function::Make(document.GetRef(5)))
    {}

    static std::string MakeFile(const std::string& body, std::vector<std::string> others)
    {
        others.insert(others.begin(), body);
        return MakePagePdf("", {.objects = std::move(others)});
    }

    std::vector<double> Call(std::vector<double> in, std::size_t outCount) const
    {
        std::vector<double> out(outCount, -99);
        function->Call(out.data(), outCount, in.data(), in.size());
        return out;
    }

    TestDocument document;
    Kernel::Counted<const Function> function;
};

std::string Repeat(const std::string& text, int count)
{
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

std::string Sampled(const std::string& bytes, const std::string& entries)
{
    return PdfBuilder::MakeStream(bytes, "/FunctionType 0 " + entries);
}

TEST(FunctionTest, SaysWhatIsNoFunction)
{
    struct Case
    {
        const char* what;
        std::string body;
        int error;
    };
    const std::string unit = "/Domain [0 1] /Range [0 1] ";
    const std::string eightBits = unit + "/Size [2] /BitsPerSample 8 ";
    const auto type2 = [](const std::string& entries) { return "<< /FunctionType 2 " + entries + " >>"; };
    const Case cases[] = {
        {"type 1", "<< /FunctionType 1 >>", Error::UnimplementedFill},
        {"type 5", "<< /FunctionType 5 >>", Error::UnimplementedFill},
        {"name", "/Identity", Error::General},
        {"whole power of negative numbers", type2("/Domain [-1 1] /N 1"), Error::General},
        {"nearly whole power", type2("/Domain [-1 1] /N 2.0000005"), Error::General},
        {"negative power of zero", type2("/Domain [0 1] /N -0.5"), Error::General},
        {"colours of different lengths", type2("/Domain [0 1] /C0 [0 0 0] /N 1"), Error::General},
        {"range of another length", type2("/Domain [0 1] /Range [0 1 0 1] /N 1"), Error::General},
        {"two inputs", type2("/Domain [0 1 0 1] /N 1"), Error::General},
        {"empty domain", type2("/Domain [1 1] /N 1"), Error::General},
        {"one number in the domain", Sampled("ab", "/Domain [0] /Range [0 1] /Size [2] /BitsPerSample 8"),
         Error::General},
        {"three numbers in the domain", Sampled("ab", "/Domain [0 1 0] /Range [0 1] /Size [2] /BitsPerSample 8"),
         Error::General},
        {"no range", Sampled("ab", "/Domain [0 1] /Size [2] /BitsPerSample 8"), Error::General},
        {"32 bits", Sampled("abcdefgh", unit + "/Size [2] /BitsPerSample 32"), Error::General},
        {"33 bits", Sampled("abcdefgh", unit + "/Size [2] /BitsPerSample 33"), Error::General},
        {"no bits", Sampled("ab", unit + "/Size [2] /BitsPerSample 0"), Error::General},
        {"negative bits", Sampled("ab", unit + "/Size [2] /BitsPerSample -8"), Error::General},
        {"no samples", Sampled("", eightBits), Error::General},
        {"too few samples", Sampled("a", eightBits), Error::General},
        {"size of another length", Sampled("abcd", unit + "/Size [2 2] /BitsPerSample 8"), Error::General},
        {"negative sizes", Sampled("abcd", "/Domain [0 1 0 1] /Range [0 1] /Size [-2 -2] /BitsPerSample 8"),
         Error::General},
        {"huge sizes", Sampled("abcd", "/Domain [0 1 0 1] /Range [0 1] /Size [2147483647 2147483647] /BitsPerSample 8"),
         Error::General},
        {"short decode", Sampled("ab", eightBits + "/Decode [0]"), Error::General},
        {"nine inputs",
         Sampled("a", "/Domain [0 1 0 1 0 1 0 1 0 1 0 1 0 1 0 1 0 1] /Range [0 1] /Size [1 1 1 1 1 1 1 1 1] "
                      "/BitsPerSample 8"),
         Error::General},
        {"no parts", "<< /FunctionType 3 /Domain [0 1] /Functions [] /Bounds [] /Encode [] >>", Error::General},
        {"part that contains it",
         "<< /FunctionType 3 /Domain [0 1] /Functions [5 0 R 5 0 R] /Bounds [0.5] "
         "/Encode [0 1 0 1] >>",
         Error::General},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const Made made(c.body);
        EXPECT_TRUE(made.function->IsDefault());
        EXPECT_THAT(made.document.GetErrors(), testing::Contains(c.error));
        EXPECT_EQ(Function::Make(made.document.GetRef(5)), made.function);
    }
}

TEST(FunctionTest, GivesInputsHeldToTheRangeForWhatIsNone)
{
    const Made made("<< /FunctionType 1 /Domain [0 1] /Range [0 1 0.25 0.5 -1] >>");
    EXPECT_THAT(made.Call({0.75}, 4), ElementsAre(0.75, 0.5, 0, 0));
    EXPECT_THAT(made.Call({2, -2, 7}, 3), ElementsAre(1, 0.25, 0));
    EXPECT_THAT(made.Call({}, 2), ElementsAre(0, 0.25));
    const Made none("<< >>");
    EXPECT_TRUE(none.function->IsDefault());
    EXPECT_THAT(none.Call({0.5}, 2), ElementsAre(0, 0));
    EXPECT_THAT(none.document.GetErrors(), IsEmpty());
}

TEST(FunctionTest, RaisesToPowers)
{
    struct Case
    {
        const char* entries;
        double in;
        std::vector<double> out;
    };
    const Case cases[] = {
        {"/Domain [0 1] /N 1", 0.25, {0.25}},
        {"/Domain [0 1]", 7, {1}},
        {"/Domain [0 1] /C0 [1 0 0] /C1 [0 1 0.5] /N 2", 0.5, {0.75, 0.25, 0.125}},
        {"/Domain [0 1] /C0 [1 0] /C1 [3 10] /Range [0 2 0 4] /N 1", 0.75, {2, 4}},
        {"/Domain [0 1] /N 0", 0, {1}},
        {"/Domain [1 4] /C0 [0] /C1 [1] /N -0.5", 4, {0.5}},
        // Not whole, so a negative domain passes; where the power has no value, neither has the function.
        {"/Domain [-1 1] /N 0.5", 0.25, {0.5}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.entries);
        const Made made(std::string("<< /FunctionType 2 ") + c.entries + " >>");
        ASSERT_TRUE(made.function->IsValid());
        EXPECT_THAT(made.Call({c.in}, c.out.size()), Pointwise(DoubleNear(1e-12), c.out));
        EXPECT_THAT(made.document.GetErrors(), IsEmpty());
    }
    const Made root("<< /FunctionType 2 /Domain [-1 1] /N 0.5 >>");
    EXPECT_TRUE(std::isnan(root.Call({-1}, 1)[0]));
    EXPECT_FALSE(root.function->IsLinear());
    // Other counts than its own are answered as by a default function.
    EXPECT_THAT(root.Call({0.5}, 2), ElementsAre(0, 0));
    EXPECT_THAT(root.Call({0.5, 0.5}, 1), ElementsAre(0));
}

TEST(FunctionTest, ReadsSamplesFromTheLowBitsUp)
{
    struct Case
    {
        int bits;
        const char* bytes;
        std::vector<double> values;
    };
    const Case cases[] = {
        {1, "\x35", {1, 0, 1, 0}},
        {2, "\xd8", {0, 2, 1, 3}},
        {4, "\x21\x43", {1, 2, 3, 4}},
        {8, "\x01\x02\x03\xff", {1, 2, 3, 255}},
        // Two bytes from the one in which the sample starts, shifted by where it starts in it.
        {12, "\x12\x34\x56\x78\x9a\xbc", {0x234, 0x345, 0x89a & 0xfff, 0x9ab}},
        {16, "\x01\x02\xff\xfe\x00\x01\x00\x00", {0x102, 0xfffe, 1, 0}},
        {24, "\x01\x02\x03\x00\x00\x04\x00\x00\x05\x00\x00\x06", {0x10203, 4, 5, 6}},
    };
    const std::size_t lengths[] = {1, 1, 2, 4, 6, 8, 12};
    for (std::size_t row = 0; row < std::size(cases); ++row) {
        const Case& c = cases[row];
        SCOPED_TRACE(c.bits);
        const std::string maximum = std::to_string((1 << c.bits) - 1);
        const Made made(
            Sampled(std::string(c.bytes, lengths[row]),
                    "/Domain [0 3] /Range [0 " + maximum + "] /Size [4] /BitsPerSample " + std::to_string(c.bits)));
        ASSERT_TRUE(Kernel::DynamicCast<const SampledFunctionN>(made.function));
        for (int i = 0; i < 4; ++i)
            EXPECT_NEAR(made.Call({static_cast<double>(i)}, 1)[0], c.values[static_cast<std::size_t>(i)], 1e-6) << i;
    }
}

TEST(FunctionTest, InterpolatesBetweenSamples)
{
    // Two inputs, the first runs fastest: f(0,0) = 0, f(1,0) = 100, f(0,1) = 200, f(1,1) = 40; a second output of 255.
    const Made plane(Sampled(std::string("\x00\xff\x64\xff\xc8\xff\x28\xff", 8),
                             "/Domain [0 1 0 1] /Range [0 255 0 1] /Decode [0 255 0 1] /Size [2 2] /BitsPerSample 8"));
    EXPECT_THAT(plane.Call({0.5, 0}, 2), ElementsAre(DoubleNear(50, 1e-9), DoubleNear(1, 1e-9)));
    EXPECT_THAT(plane.Call({0.5, 0.5}, 2), ElementsAre(DoubleNear(85, 1e-9), DoubleNear(1, 1e-9)));
    EXPECT_THAT(plane.Call({9, -9}, 2), ElementsAre(DoubleNear(100, 1e-9), DoubleNear(1, 1e-9)));

    // Encoded backwards, and decoded to more than the range lets through.
    const Made encoded(Sampled(std::string("\x00\x80\xff", 3),
                               "/Domain [-1 1] /Range [0 1] /Encode [2 0] /Decode [0 2] /Size [3] /BitsPerSample 8"));
    EXPECT_THAT(encoded.Call({-1}, 1), ElementsAre(1));
    EXPECT_THAT(encoded.Call({0.5}, 1), ElementsAre(DoubleNear(128 / 255.0, 1e-9)));
    EXPECT_THAT(encoded.Call({1}, 1), ElementsAre(0));

    // Long enough for its inputs, too short for its outputs: what is not there is 0.
    const Made truncated(Sampled("\xff\xff", "/Domain [0 1] /Range [0 1 0 1] /Size [2] /BitsPerSample 8"));
    ASSERT_TRUE(truncated.function->IsValid());
    EXPECT_THAT(truncated.Call({0}, 2), ElementsAre(1, 1));
    EXPECT_THAT(truncated.Call({1}, 2), ElementsAre(0, 0));

    std::string corners(256, '\0');
    corners[255] = '\xff';
    const Made eight(Sampled(corners, "/Domain [0 1 0 1 0 1 0 1 0 1 0 1 0 1 0 1] /Range [0 1] "
                                      "/Size [2 2 2 2 2 2 2 2] /BitsPerSample 8"));
    EXPECT_THAT(eight.Call(std::vector<double>(8, 0.5), 1), ElementsAre(DoubleNear(1 / 256.0, 1e-9)));
}

TEST(FunctionTest, StitchesParts)
{
    const std::vector<std::string> parts{"<< /FunctionType 2 /Domain [0 1] /C0 [0] /C1 [10] /N 1 >>",
                                         "<< /FunctionType 2 /Domain [0 1] /C0 [20] /C1 [30] /N 1 >>",
                                         "<< /FunctionType 2 /Domain [0 1] /C0 [0 0] /C1 [1 1] /N 1 >>"};
    const auto stitch = [&parts](const std::string& entries) {
        return Made("<< /FunctionType 3 /Domain [0 1] " + entries + " >>", parts);
    };
    const Made two = stitch("/Functions [6 0 R 7 0 R] /Bounds [0.25] /Encode [0 1 1 0]");
    EXPECT_THAT(two.Call({0.125}, 1), ElementsAre(5));
    EXPECT_THAT(two.Call({0.25}, 1), ElementsAre(30));
    EXPECT_THAT(two.Call({1}, 1), ElementsAre(20));
    EXPECT_THAT(two.Call({7}, 1), ElementsAre(20));
    EXPECT_FALSE(two.function->IsLinear());
    EXPECT_TRUE(stitch("/Functions [6 0 R] /Bounds [] /Encode [0 1]").function->IsLinear());
    EXPECT_THAT(stitch("/Functions [6 0 R] /Bounds [] /Encode [0 1] /Range [0 4]").Call({1}, 1), ElementsAre(4));

    struct Case
    {
        const char* entries;
        std::vector<double> bounds;
    };
    const Case cases[] = {
        {"/Functions [6 0 R 7 0 R 6 0 R] /Bounds [0.5 0.5] /Encode [0 1 0 1 0 1]", {0, 0.5, 1}},
        // Of two empty parts in a row the second stays.
        {"/Functions [6 0 R 7 0 R 7 0 R 6 0 R] /Bounds [0.5 0.5 0.5] /Encode [0 1 0 1 0 1 0 1]", {0, 0.5, 0.5, 1}},
        {"/Functions [6 0 R 7 0 R 6 0 R] /Bounds [0 1] /Encode [0 1 0 1 0 1]", {0, 1}},
        {"/Functions [6 0 R 7 0 R] /Bounds [0.5 0.7] /Encode [0 1 0 1]", {}},
        {"/Functions [6 0 R 7 0 R 6 0 R] /Bounds [0.7 0.5] /Encode [0 1 0 1 0 1]", {}},
        {"/Functions [6 0 R 8 0 R] /Bounds [0.5] /Encode [0 1 0 1]", {}},
        {"/Functions [6 0 R 99 0 R] /Bounds [0.5] /Encode [0 1 0 1]", {}},
        {"/Functions [6 0 R 7 0 R] /Bounds [0.5] /Encode [0 1 0]", {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.entries);
        const Made made = stitch(c.entries);
        const auto stitching = Kernel::DynamicCast<const StitchingFunction>(made.function);
        ASSERT_EQ(static_cast<bool>(stitching), !c.bounds.empty());
        if (stitching) {
            EXPECT_EQ(stitching->bounds, c.bounds);
        }
        EXPECT_TRUE(std::isfinite(made.Call({0.5}, 1)[0]));
    }
}

TEST(FunctionTest, EndsWhateverFunctionsConsistOf)
{
    // Each of many functions has one part, the next; and each is asked for from the last on, so that none goes deep.
    const auto wrap = [](int number) {
        return "<< /FunctionType 3 /Domain [0 1] /Functions [" + std::to_string(number) +
               " 0 R] /Bounds [] /Encode [0 1] >>";
    };
    constexpr int c_count = 20'000;
    std::vector<std::string> chain{"<< /FunctionType 2 /Domain [0 1] /N 1 >>"};
    for (int i = 1; i < c_count; ++i)
        chain.push_back(wrap(5 + i));
    const Made made("<< >>", chain);
    int validCount = 0;
    for (int i = 0; i < c_count; ++i)
        validCount += Function::Make(made.document.GetRef(6 + i))->IsValid() ? 1 : 0;
    EXPECT_GT(validCount, 60);
    EXPECT_LT(validCount, c_count);

    constexpr int c_depth = 2000;
    const std::string nested = Repeat("<< /FunctionType 3 /Domain [0 1] /Functions [", c_depth) +
                               "<< /FunctionType 2 /Domain [0 1] /N 1 >>" +
                               Repeat("] /Bounds [] /Encode [0 1] >>", c_depth);
    EXPECT_TRUE(Made(nested).function->IsDefault());

    // A detour: 5 needs 6 and 6 needs 5, twice each.
    const std::string entries = "/Bounds [0.5] /Encode [0 1 0 1] >>";
    const Made detour("<< /FunctionType 3 /Domain [0 1] /Functions [6 0 R 6 0 R] " + entries,
                      {"<< /FunctionType 3 /Domain [0 1] /Functions [5 0 R 5 0 R] " + entries});
    EXPECT_TRUE(detour.function->IsDefault());
}

} // namespace
} // namespace Quillet
