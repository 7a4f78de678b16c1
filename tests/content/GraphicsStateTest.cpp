#include "ContentRun.h"

#include "content/TextHandler.h"

#include <Renderer/FillDescriptor.h>
#include <Renderer/LineStyle.h>
#include <Renderer/LineStyleDescriptor.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Quillet::Test {
namespace {

using Params = Raster::AffineTransform::Params;
using Point = Kernel::PointT<double>;
using Rect = Kernel::RectT<double>;
using testing::DoubleEq;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pointwise;

TEST(GraphicsStateTest, KeepsDashesInMultiplesOfTheWidth)
{
    const struct
    {
        const char* content;
        int dashKind;
        std::vector<double> dashes;
        double phase;
    } rows[] = {
        {"2 w [4 2] 1 d 4 w probe", 2, {1, 0.5}, 0.25},
        {"[4 [2]] 1 d probe", 2, {4, 2}, 1},
        {"0 w [4 2] 1 d probe", 2, {4, 2}, 1},
        {"[4] 1 d 2 0 w d [6] 0 d probe", 2, {6}, 0},
        {"q [4 2] 1 d Q probe", 1, {}, 0},
    };
    for (const auto& row : rows) {
        const int calls = InspectState(row.content, {}, [&](const GraphicsState& state) {
            EXPECT_EQ(state.lineStyle->dashKind, row.dashKind) << row.content;
            EXPECT_THAT(state.lineStyle->dashes, Pointwise(DoubleEq(), row.dashes)) << row.content;
            EXPECT_EQ(state.lineStyle->dashPhase, row.phase) << row.content;
        });
        EXPECT_EQ(calls, 1) << row.content;
    }
}

TEST(GraphicsStateTest, MapsCapsAndJoins)
{
    using Style = Renderer::LineStyle;
    /// Cap, join and the number of errors.
    const std::pair<const char*, std::vector<int>> rows[] = {
        {"1 J 1 j probe", {Style::CapHalfCircle, Style::JoinRound, 0}},
        {"2 J 2 j probe", {Style::CapProjectingSquare, Style::JoinBevel, 0}},
        {"1 J 3 J 1 j -1 j probe", {Style::CapButt, Style::JoinMitre, 2}},
        // These two operators do nothing with a wrong number of operands.
        {"1 J 0 2 J 1 j j probe", {Style::CapHalfCircle, Style::JoinRound, 2}},
    };
    for (const auto& [content, expected] : rows) {
        std::vector<int> values;
        const ContentRun run(content, {}, [&](GraphicsStateStack& stack, const ArgVec&) {
            values = {stack.GetTop().lineStyle->cap, stack.GetTop().lineStyle->join};
        });
        values.push_back(static_cast<int>(run.GetErrors().size()));
        EXPECT_EQ(values, expected) << content;
    }
}

TEST(GraphicsStateTest, ScalesTheLineWidthToThePage)
{
    const Params doubled = Params::FromPdf(0, 2, -2, 0, 7, 8);
    std::vector<double> widths;
    InspectState("3 w probe 0 w probe -5 w probe", {}, [&](const GraphicsState& state) {
        widths.push_back(state.MakeLineStyleDescriptor(doubled)->lineStyle->width);
    });
    EXPECT_THAT(widths, ElementsAre(DoubleEq(6), 0.1, 0.1));
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
        PageParts parts;
        parts.entries = std::string("/MediaBox [0 0 500 500] /TrimBox [10 20 110 220] ") + row.rotate;
        const int calls = InspectState("probe", parts, [&](const GraphicsState& state) {
            EXPECT_EQ(state.ltCurrent.ApplyTo(row.topLeft), (Point{0, 0})) << row.rotate;
            EXPECT_EQ(state.ltCurrent.ApplyTo(row.bottomRight), row.size) << row.rotate;
        });
        EXPECT_EQ(calls, 1);
    }
}

TEST(GraphicsStateTest, ClipsTheRootToTheDocumentsClipArea)
{
    PageParts parts;
    parts.entries = "/MediaBox [0 0 100 100] /CropBox [10 20 60 70] /Rotate 90";
    const ContentRun clipped("", parts, {},
                             [](PdfDocument& document) { document.SetPageClipArea(PageClipArea::PageClipMedia); });
    ASSERT_TRUE(clipped.root->clipPath);
    // The trim box falls back on the crop box, and the media box lies around that.
    EXPECT_EQ(clipped.root->clipPath->GetApproxBBox(), (Rect{-20, -10, 80, 90}));
}

TEST(GraphicsStateTest, AppliesTheNewestTransformFirst)
{
    const std::pair<const char*, Point> rows[] = {
        {"2 0 0 2 10 10 cm 1 0 0 1 5 0 cm probe", {20, 90}},
        {"0 0 0 0 5 6 cm probe", {5, 94}},
    };
    for (const auto& [content, origin] : rows) {
        const int calls = InspectState(content, {}, [&origin = origin](const GraphicsState& state) {
            EXPECT_EQ(state.ltCurrent.ApplyTo(Point{0, 0}), origin);
            EXPECT_NE(state.ltCurrent.GetDeterminant(), 0);
        });
        EXPECT_EQ(calls, 1);
    }
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
    std::string content = "[1 2 3] 0 d ";
    for (int i = 0; i < 50'000; ++i)
        content += "q 0 0 9 9 re W n ";
    const ContentRun run(content + "5 w probe", {}, [](GraphicsStateStack& stack, const ArgVec&) {
        EXPECT_EQ(stack.states.size(), 50'001U);
        EXPECT_EQ(stack.GetTop().GetPreviousObject(), stack.GetTop().currentGroup);
    });
    EXPECT_THAT(run.GetErrors(), IsEmpty());
}

TEST(GraphicsStateTest, LeavesWhatAFormLeftUnbalanced)
{
    PageParts parts;
    parts.resources = "/XObject << /Open 5 0 R /Surplus 6 0 R >>";
    const std::string entries = "/Type /XObject /Subtype /Form /BBox [0 0 9 9]";
    parts.objects = {PdfBuilder::MakeStream("9 w q q 0 0 1 1 re", entries),
                     PdfBuilder::MakeStream("Q Q Q 0 0 1 1 re f", entries)};
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
        int calls = 0;
        const PageParts parts{.resources =
                                  "/Font << /F << /Type /Font /Subtype /Type1 /BaseFont /Any /Widths [500 500] "
                                  "/FirstChar 97 /Encoding /WinAnsiEncoding >> >>"};
        const ContentRun run(row.content, parts, [&](GraphicsStateStack& stack, const ArgVec&) {
            ++calls;
            EXPECT_EQ(stack.textHandler->GetLtText().ApplyTo(Point{0, 0}), row.pen) << row.content;
            EXPECT_EQ(stack.GetTop().leading, row.leading) << row.content;
        });
        EXPECT_EQ(calls, 1) << row.content;
    }
}

TEST(GraphicsStateTest, ReadsTextModes)
{
    const std::vector<std::pair<int, int>> flags{{2, 0}, {1, 0}, {3, 0}, {0, 0}, {2, 1}, {1, 1}, {3, 1}, {0, 1}};
    for (std::size_t mode = 0; mode < flags.size(); ++mode) {
        const int calls = InspectState(std::to_string(mode) + " Tr probe", {}, [&](const GraphicsState& state) {
            EXPECT_EQ(std::pair(state.renderFlags, state.isTextClip), flags[mode]) << mode;
        });
        EXPECT_EQ(calls, 1);
    }
}

} // namespace
} // namespace Quillet::Test
