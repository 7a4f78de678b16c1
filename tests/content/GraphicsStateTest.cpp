#include "ContentRun.h"

#include "content/TextHandler.h"
#include "objects/SoftMask.h"
#include "support/Repeat.h"

#include <Renderer/FillBlendMode.h>
#include <Renderer/FillDescriptor.h>
#include <Renderer/LineStyle.h>
#include <Renderer/LineStyleDescriptor.h>

#include <gmock/gmock.h>

namespace Quillet::Test {
namespace {

using Params = Raster::AffineTransform::Params;
using Point = Kernel::PointT<double>;
using Rect = Kernel::RectT<double>;
using testing::DoubleEq;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pointwise;

using Values = std::vector<double>;

Values GetDashes(const GraphicsState& state)
{
    Values values{static_cast<double>(state.lineStyle->dashKind), state.lineStyle->dashPhase};
    values.insert(values.end(), state.lineStyle->dashes.begin(), state.lineStyle->dashes.end());
    return values;
}

Values GetCapAndJoin(const GraphicsState& state)
{
    return {static_cast<double>(state.lineStyle->cap), static_cast<double>(state.lineStyle->join)};
}

/// On a page twice as large and turned.
Values GetWidthOnPage(const GraphicsState& state)
{
    return {state.MakeLineStyleDescriptor(Params::FromPdf(0, 2, -2, 0, 7, 8))->lineStyle->width};
}

Values GetTextMode(const GraphicsState& state)
{
    return {static_cast<double>(state.renderFlags), state.isTextClip ? 1.0 : 0.0};
}

/// An inverse is always there.
Values GetOrigin(const GraphicsState& state)
{
    EXPECT_NE(state.ltCurrent.GetDeterminant(), 0);
    const Point origin = state.ltCurrent.ApplyTo(Point{0, 0});
    return {origin.x, origin.y};
}

TEST(GraphicsStateTest, FollowsItsOperators)
{
    using Style = Renderer::LineStyle;
    const struct
    {
        const char* content;
        Values (*get)(const GraphicsState&);
        Values values;
        std::size_t errors;
    } rows[] = {
        // Dashes are kept in multiples of the width.
        {"2 w [4 2] 1 d 4 w", GetDashes, {2, 0.25, 1, 0.5}, 0},
        {"[4 [2]] 1 d", GetDashes, {2, 1, 4, 2}, 0},
        {"0 w [4 2] 1 d", GetDashes, {2, 1, 4, 2}, 0},
        {"[4] 1 d 2 0 w d [6] 0 d", GetDashes, {2, 0, 6}, 2},
        {"q [4 2] 1 d Q", GetDashes, {1, 0}, 0},
        {"1 J 1 j", GetCapAndJoin, {Style::CapHalfCircle, Style::JoinRound}, 0},
        {"2 J 2 j", GetCapAndJoin, {Style::CapProjectingSquare, Style::JoinBevel}, 0},
        {"1 J 3 J 1 j -1 j", GetCapAndJoin, {Style::CapButt, Style::JoinMitre}, 2},
        // These two operators do nothing with a wrong number of operands.
        {"1 J 0 2 J 1 j j", GetCapAndJoin, {Style::CapHalfCircle, Style::JoinRound}, 2},
        {"3 w", GetWidthOnPage, {6}, 0},
        {"0 w", GetWidthOnPage, {0.1}, 0},
        {"-5 w", GetWidthOnPage, {0.1}, 0},
        {"0 Tr", GetTextMode, {2, 0}, 0},
        {"1 Tr", GetTextMode, {1, 0}, 0},
        {"3 Tr", GetTextMode, {0, 0}, 0},
        {"6 Tr", GetTextMode, {3, 1}, 0},
        // The newest transform comes first.
        {"2 0 0 2 10 10 cm 1 0 0 1 5 0 cm", GetOrigin, {20, 90}, 0},
        {"0 0 0 0 5 6 cm", GetOrigin, {5, 94}, 0},
    };
    for (const auto& row : rows) {
        Values values;
        const ContentRun run(row.content + std::string(" probe"), {},
                             [&](GraphicsStateStack& stack, const ArgVec&) { values = row.get(stack.GetTop()); });
        EXPECT_THAT(values, Pointwise(DoubleEq(), row.values)) << row.content;
        EXPECT_EQ(run.GetErrors().size(), row.errors) << row.content;
    }
}

/// The corner of the trim box that comes to lie at the top left, and the one diagonally opposite.
TEST(GraphicsStateTest, PlacesThePageByTrimBoxAndRotation)
{
    const struct
    {
        const char* rotate;
        Point topLeft, bottomRight, size;
    } rows[] = {
        {"/Rotate 90", {10, 20}, {110, 220}, {200, 100}},
        {"/Rotate 270", {110, 220}, {10, 20}, {200, 100}},
        {"/Rotate -360", {10, 220}, {110, 20}, {100, 200}},
    };
    for (const auto& row : rows) {
        const PageParts parts{.entries = std::string("/MediaBox [0 0 500 500] /TrimBox [10 20 110 220] ") + row.rotate};
        const int calls = InspectState("probe", parts, [&](const GraphicsState& state) {
            EXPECT_EQ(state.ltCurrent.ApplyTo(row.topLeft), (Point{0, 0})) << row.rotate;
            EXPECT_EQ(state.ltCurrent.ApplyTo(row.bottomRight), row.size) << row.rotate;
        });
        EXPECT_EQ(calls, 1);
    }
}

TEST(GraphicsStateTest, ClipsTheRootToTheDocumentsClipArea)
{
    const ContentRun clipped("", {.entries = "/MediaBox [0 0 100 100] /CropBox [10 20 60 70] /Rotate 90"}, {},
                             [](PdfDocument& document) { document.SetPageClipArea(PageClipArea::PageClipMedia); });
    ASSERT_TRUE(clipped.root->clipPath);
    // The trim box falls back on the crop box, and the media box lies around that.
    EXPECT_EQ(clipped.root->clipPath->GetApproxBBox(), (Rect{-20, -10, 80, 90}));
}

TEST(GraphicsStateTest, RestoresAllButThePath)
{
    double width = 0;
    const ContentRun run("3 w 0 0 m q 9 w Q 10 0 l probe S", {},
                         [&](GraphicsStateStack& stack, const ArgVec&) { width = stack.GetTop().lineStyle->width; });
    EXPECT_EQ(width, 3);
    ASSERT_EQ(run.GetCount(), 1U);
    EXPECT_EQ(run.GetPath(0)->path->curves[0]->nodes.size(), 4U);
    EXPECT_EQ(run.GetErrors().size(), 3U);
}

TEST(GraphicsStateTest, SurvivesDeepNesting)
{
    const std::string content = "[1 2 3] 0 d " + Repeat("q 0 0 9 9 re W n ", 50'000) + "5 w probe";
    const ContentRun run(content, {}, [](GraphicsStateStack& stack, const ArgVec&) {
        EXPECT_EQ(stack.states.size(), 50'001U);
        EXPECT_EQ(stack.GetTop().GetPreviousObject(), stack.GetTop().currentGroup);
    });
    EXPECT_THAT(run.GetErrors(), IsEmpty());
}

TEST(GraphicsStateTest, LeavesWhatAFormLeftUnbalanced)
{
    const std::string entries = "/Type /XObject /Subtype /Form /BBox [0 0 9 9]";
    const PageParts parts{.resources = "/XObject << /Open 5 0 R /Surplus 6 0 R >>",
                          .objects = {PdfBuilder::MakeStream("9 w q q 0 0 1 1 re", entries),
                                      PdfBuilder::MakeStream("Q Q Q 0 0 1 1 re f", entries)}};
    std::vector<std::size_t> depths;
    const ContentRun run("3 w q /Open Do probe Q q q /Surplus Do probe Q Q probe", parts,
                         [&](GraphicsStateStack& stack, const ArgVec&) {
                             depths.push_back(stack.states.size());
                             EXPECT_EQ(stack.currentCategory, OperatorCategory::Page);
                             EXPECT_EQ(stack.GetTop().lineStyle->width, 3);
                         });
    EXPECT_THAT(depths, ElementsAre(2, 3, 1));
    EXPECT_THAT(run.GetErrors(), IsEmpty());
}

TEST(GraphicsStateTest, FollowsTheTextMatrix)
{
    const struct
    {
        const char* content;
        Point pen;
        double leading;
    } rows[] = {
        {"BT 10 20 Td 5 -7 TD T* probe ET", {15, 6}, 7},
        {"BT 2 0 0 2 10 20 Tm 3 4 Td probe ET", {16, 28}, 0},
        {"/F 1 Tf 3 TL BT 1 2 () \" () ' probe ET", {0, -6}, 3},
        // A string moves the pen by its width, kerning and scale.
        {"/F 10 Tf BT 1 2 Td 2 Tc (a) Tj [(a) -100] TJ probe ET", {1 + 2 * (5 + 2) + 1, 2}, 0},
        {"/F 10 Tf BT 1 2 Td 50 Tz (ab) Tj ET BT 3 0 0 3 1 2 Tm (ab) Tj probe ET", {1 + 15, 2}, 0},
        // A matrix without an inverse keeps its translation.
        {"BT 0 0 0 0 5 6 Tm probe ET", {5, 6}, 0},
    };
    for (const auto& row : rows) {
        std::pair<Point, double> found;
        const PageParts parts{.resources =
                                  "/Font << /F << /Type /Font /Subtype /Type1 /BaseFont /Any /Widths [500 500] "
                                  "/FirstChar 97 /Encoding /WinAnsiEncoding >> >>"};
        const ContentRun run(row.content, parts, [&](GraphicsStateStack& stack, const ArgVec&) {
            found = {stack.textHandler->GetLtText().ApplyTo(Point{0, 0}), stack.GetTop().leading};
        });
        EXPECT_EQ(found, std::pair(row.pen, row.leading)) << row.content;
    }
}

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
