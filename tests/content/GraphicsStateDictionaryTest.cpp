#include "ContentRun.h"

#include "objects/SoftMask.h"

#include <Renderer/FillBlendMode.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Quillet::Test {
namespace {

using testing::ElementsAre;

PageParts WithParameters(const std::string& dictionary)
{
    return {.resources = "/ExtGState << /G " + dictionary + " >>",
            .objects = {"<< /FunctionType 4 >>",
                        PdfBuilder::MakeStream("", "/Subtype /Form /BBox [0 0 9 9] /Group << /CS /DeviceRGB >>")}};
}

/// Every row ends in a line width, which shows that the values before it were passed over whole.
TEST(GraphicsStateDictionaryTest, ReportsOnlyWhatIsLost)
{
    const int feature = Error::UnimplementedFeature;
    const int general = Error::General;
    const int transparency = Error::UnimplementedTransparency;
    const std::pair<std::string, std::vector<int>> rows[] = {
        {"/Type /Foo", {general}},
        {"/OP true /op false /SA 1 /AIS [true] /TK (x)", {}},
        {"/OPM 1 /FL 0.5 /SM << /A 1 >>", {}},
        {"/RI /Perceptual /BG 5 0 R /UCR [1 [2]] /BG2 /Default /UCR2 5 0 R /HT << /Type /Halftone >> /Name /N", {}},
        {"/TR /Identity /TR2 /Default", {}},
        {"/TR /Default", {feature}},
        {"/TR2 [5 0 R 5 0 R << /A [1] >>]", {feature}},
        {"/Font [5 0 R 12] /Foo << /LW 9 >>", {feature, feature}},
        {"/LC 7 /LJ 1.5", {general, general}},
        {"/D [5]", {general}},
        {"/D [<< /A 1 >> [2]]", {general}},
        {"/D << /A 1 >>", {general}},
        {"/SMask /Foo", {transparency}},
        {"/SMask /None", {}},
        {"/SMask << /S /Luminosity /G 6 0 R /BC [0 0 0] /TR /Identity >>", {transparency}},
        {"/SMask << /S /Foo /G 6 0 R /TR /Foo >>", {general, general, transparency}},
        {"/BM /Foo", {}},
    };
    for (const auto& [entries, errors] : rows) {
        double width = 0;
        const ContentRun run(
            "/G gs probe", WithParameters("<< " + entries + " /LW 7 >>"),
            [&](GraphicsStateStack& stack, const ArgVec&) { width = stack.GetTop().lineStyle->width; });
        EXPECT_EQ(width, 7) << entries;
        EXPECT_EQ(run.GetErrors(), errors) << entries;
    }
}

TEST(GraphicsStateDictionaryTest, AppliesEntriesInOrder)
{
    const std::string entries = "<< /LW 3 /D [[4 2] 1] /LW 2 /ML 5 /CA 0.25 /ca 0.5 "
                                "/BM [/Foo /Multiply /Screen] /SMask << /S /Luminosity /G 6 0 R >> >>";
    const int calls = InspectState("/G gs probe", WithParameters(entries), [](const GraphicsState& state) {
        EXPECT_EQ(state.lineStyle->width, 2);
        EXPECT_THAT(state.lineStyle->dashes, ElementsAre(2, 1));
        EXPECT_EQ(state.lineStyle->dashPhase, 0.5);
        EXPECT_EQ(state.lineStyle->mitreLimit, 5);
        EXPECT_EQ(state.strokeAlpha, 0.25);
        EXPECT_EQ(state.fillAlpha, 0.5);
        EXPECT_EQ(state.blendMode, Renderer::FillBlendMode::Multiply);
        ASSERT_TRUE(state.softMask);
        EXPECT_TRUE(state.softMask->isLuminosity);
        EXPECT_TRUE(state.softMask->backdrop);
    });
    EXPECT_EQ(calls, 1);
}

TEST(GraphicsStateDictionaryTest, ClearsTheSoftMaskAndTheBlendMode)
{
    PageParts parts = WithParameters("<< /SMask << /S /Alpha /G 6 0 R >> /BM /Screen >> /N << /SMask /Foo /BM /Bar >>");
    const ContentRun run("/G gs /N gs probe", parts, [](GraphicsStateStack& stack, const ArgVec&) {
        EXPECT_FALSE(stack.GetTop().softMask);
        EXPECT_EQ(stack.GetTop().blendMode, Renderer::FillBlendMode::Normal);
    });
    EXPECT_EQ(run.GetErrors(), std::vector<int>(2, Error::UnimplementedTransparency));
}

TEST(GraphicsStateDictionaryTest, ReportsByPlaceAndShape)
{
    const struct
    {
        const char* content;
        const char* parameters;
        std::vector<int> errors;
    } rows[] = {
        // Silent about features in compatibility sections.
        {"BX BX EX /G gs EX", "<< /TR 5 0 R >>", {}},
        {"BX EX /G gs", "<< /TR 5 0 R >>", {Error::UnimplementedFeature}},
        {"EX BX /G gs", "<< /TR 5 0 R >>", {Error::UnimplementedFeature}},
        {"EX BX BX /G gs", "<< /TR 5 0 R >>", {}},
        {"/G gs", "[/LW 7]", {Error::General}},
        {"/G gs", "9 0 R", {Error::General, Error::General}},
        {"(G) gs", "", {Error::General, Error::General}},
    };
    for (const auto& row : rows) {
        const ContentRun run(row.content, WithParameters(row.parameters));
        EXPECT_EQ(run.GetErrors(), row.errors) << row.content << row.parameters;
    }
}

} // namespace
} // namespace Quillet::Test
