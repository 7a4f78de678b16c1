#include <Quillet/TextLineObject.h>

#include "MakeLines.h"
#include "TextOf.h"
#include "content/ContentRun.h"
#include "content/GraphicsState.h"
#include "document/Dictionary.h"
#include "fonts/CodeSequence.h"
#include "objects/SoftMask.h"
#include "objects/MakeObjects.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <sstream>
#include <tuple>

namespace Quillet::Test {
namespace {

using namespace Story::GlyphAtt;

TEST(TextLineTest, CleansUpAtTheEndOfTheLine)
{
    const struct
    {
        const char* before;
        const char* after;
        /// How far the start has moved.
        double start;
    } rows[] = {
        {"", "", 0},
        {"a6 b6", "a6 b6", 0},
        // Spaces at the ends.
        {"_3 _2 a6", "a6", 5},
        {">4 _2 a6 >4", "a6 >4", 6},
        {"a6 _2^ _3", "a6", 0},
        {"_3 _3^", "", 6},
        {"_3", "", 3},
        // Spaces in a row, thin spaces, and those that look another way.
        {"a6 _2 _3 b6", "a6 _5 b6", 0},
        {"a6 _2 _3 _0.5 b6", "a6 _5.5 b6", 0},
        {"a6 _2 _3^ b6", "a6 _2 _3 b6", 0},
        {"a6 _0.99 b6", "a6.99 b6", 0},
        {"a6 _0.5 _0.5 b6", "a7 b6", 0},
        {"a6 _1 b6", "a6 _1 b6", 0},
        {"a6 _0.5^ b6", "a6 _0.5 b6", 0},
        // Hyphens.
        {"a6 ~6 b6 ~6", "a6 =6 b6 =6", 0},
        // An advance that has a space in it: half a size, or a sixth where a gap was asked for.
        {"a10.99 b6", "a10.99 b6", 0},
        {"a11.01 b6", "a6 _5.01 b6", 0},
        {"a7.66! b6", "a7.66 b6", 0},
        {"a7.67! b6", "a6 _1.67 b6", 0},
        {"a11.5 _6 b6", "a6 _11.5 b6", 0},
        {"a11.5 b11.5 c6", "a6 _5.5 b6 _5.5 c6", 0},
        {"a6 b11.5", "a6 b6", 0},
        {"a99? b6", "a99 b6", 0},
        {"a2 b6", "a2 b6", 0},
        // Negative advances. A last one says nothing.
        {"a-5", "a5", -5},
        {"a6 b-2", "a6 b6", 0},
        {"a-5 b6", "b5 a1", -5},
        {"a6 b-2 c6", "a4 c2 b4", 0},
        {"a6 _-3 b6", "a3 b3", 0},
        {"c-6 b-6 a6", "a6 b6 c6", -12},
        {"c-12 b-12 a6", "a6 _6 b6 _6 c6", -24},
    };
    for (const auto& row : rows) {
        const Line line = ParseLine(row.before);
        line->position = {100, 50};
        line->OnEndOfLine();
        EXPECT_EQ(PrintLine(*line), row.after) << row.before;
        // Whatever is to become of the text: an advance of a font without a space is no gap.
        const Line editable = ParseLine(row.before);
        editable->fidelity = TextFidelityEditable;
        editable->OnEndOfLine();
        EXPECT_EQ(PrintLine(*editable), row.after) << row.before;
        EXPECT_NEAR(line->position.x, 100 + row.start, 1e-9) << row.before;
        EXPECT_EQ(line->position.y, 50) << row.before;
        EXPECT_NEAR(line->width, line->GetWidth(line->chars.begin(), line->chars.end()), 1e-9) << row.before;
        EXPECT_EQ(line->textHeight, line->chars.empty() ? 0 : 10) << row.before;
    }
}

/// Where each glyph is, from left to right.
std::vector<std::pair<double, char32_t>> GetPlaces(const TextLineObject& line)
{
    std::vector<std::pair<double, char32_t>> places;
    double pen = line.position.x;
    for (const Char& c : line.chars) {
        if (!c.isSpace) places.emplace_back(pen, c.unicode);
        pen += c.width;
    }
    return places;
}

TEST(TextLineTest, ThinSpacesAreThinForTheirSize)
{
    const std::tuple<double, double, bool> rows[] = {
        {10, 0.99, false}, {10, 1, true}, {4, 0.49, false}, {4, 0.51, true}, {20, 0.99, false}};
    for (const auto& [size, width, isKept] : rows) {
        const Atts atts = MakeAtts(size);
        const Line line = MakeLine({MakeChar(U'a', 2, atts), MakeChar(U' ', width, atts), MakeChar(U'b', 2, atts)});
        line->OnEndOfLine();
        EXPECT_EQ(line->GetText(), isKept ? "a b" : "ab") << size << " " << width;
    }
}

TEST(TextLineTest, PutsGlyphsInReadingOrderWithoutMovingThem)
{
    std::mt19937 random(1);
    for (int round = 0; round < 300; ++round) {
        TextLineObject::Chars chars;
        const int count = round % 20 == 0 ? 100 : 2 + round % 20;
        for (int i = 0; i < count; ++i) {
            const double width = static_cast<double>(random() % 241) / 10 - 12;
            chars.push_back(
                MakeChar(U'A' + static_cast<char32_t>(i), i + 1 < count ? width : std::abs(width), MakeAtts()));
        }
        const Line line = MakeLine(std::move(chars));
        auto before = GetPlaces(*line);
        std::ranges::stable_sort(before, {}, &std::pair<double, char32_t>::first);
        line->OnEndOfLine();
        const auto after = GetPlaces(*line);
        ASSERT_EQ(after.size(), before.size()) << round;
        double pen = -1e9;
        for (const auto& [x, unicode] : after) {
            const auto was = std::ranges::find(before, unicode, &std::pair<double, char32_t>::second);
            ASSERT_NE(was, before.end());
            EXPECT_NEAR(x, was->first, 1e-9) << round;
            EXPECT_GE(x, pen - 1e-9) << round;
            pen = x;
        }
        for (std::size_t i = 0; i + 1 < line->chars.size(); ++i)
            EXPECT_GE(line->chars[i].width, 0) << round;
        EXPECT_NEAR(line->width, line->GetWidth(line->chars.begin(), line->chars.end()), 1e-9) << round;
    }
}

TEST(TextLineTest, LosesNoCharacterOverWidthsThatAreNoNumbers)
{
    for (const char* text : {"anan", "anan b6", "a6 bnan c6", "a6 bnan", "a-5 bnan c-5 d6", "anan bnan cnan"}) {
        const Line line = ParseLine(text);
        const std::size_t count = line->chars.size();
        line->OnEndOfLine();
        EXPECT_EQ(line->chars.size(), count) << text;
    }
}

TEST(TextLineTest, TakesTheBaselineOfTheLargestText)
{
    struct Part
    {
        double size;
        double shift;
    };
    const struct
    {
        std::vector<Part> parts;
        /// How far the line goes up.
        double up;
        std::vector<double> shifts;
    } rows[] = {
        {{{10, 0}, {6, -3}}, 0, {0, -3}},
        {{{6, 0}, {10, 3}, {10, 3}}, -3, {-3, 0, 0}},
        {{{10, -2}, {10, 3}, {10, 3}}, -3, {-5, 0, 0}},
        {{{10, -4}}, 4, {0}},
        // As often: the one nearest to the pen.
        {{{10, 5}, {10, -1}}, 1, {6, 0}},
        // Too little to show.
        {{{10, 0.05}}, -0.05, {0.05}},
        {{{10, 0.06}}, -0.06, {0}},
        {{{10, 2}, {10.0005, 2}, {9.99, 0}}, -2, {0, 0, -2}},
    };
    for (const auto& row : rows) {
        TextLineObject::Chars chars;
        for (const Part& part : row.parts)
            chars.push_back(MakeChar(U'a', 6, MakeAtts(part.size, part.shift)));
        const Line line = MakeLine(std::move(chars));
        line->OnEndOfLine();
        EXPECT_NEAR(line->position.y, row.up, 1e-9);
        for (std::size_t i = 0; i < row.shifts.size(); ++i)
            EXPECT_NEAR(line->chars[i].atts->Get(BaselineShift), row.shifts[i], 1e-9) << row.up << " " << i;
    }
}

TEST(TextLineTest, TurnsGapsIntoSpacesOrWidth)
{
    const double sixth = 10.0 / 6;
    const struct
    {
        const char* before;
        std::vector<double> gaps;
        const char* after;
        /// Of the first character.
        bool isKerned;
    } rows[] = {
        {"a6", {0}, "a6", false},
        {"a6", {1.6}, "a7.6", true},
        {"a6", {sixth}, "a6 _1.6667", true},
        {"a6", {std::nextafter(sixth, 0)}, "a7.6667", true},
        {"a6", {2, -1}, "a6 _1", true},
        {"a6", {2, 30}, "a6 _32", true},
        {"a6 _6", {30}, "a6 _36", false},
        {"a6 _6", {-7}, "a6 _-1", false},
        {"a6", {-3}, "a3", false},
        {"a6!", {-3}, "a3", false},
        {"a6", {-6 - 1e-6}, "a0", false},
        {"a6", {-6.1}, "a-0.1", false},
        {"a6?", {50}, "a56", true},
    };
    for (const auto& row : rows) {
        const Line line = ParseLine(row.before);
        for (const double gap : row.gaps)
            line->Kern(-gap);
        EXPECT_EQ(PrintLine(*line), row.after) << row.before;
        EXPECT_EQ(line->chars[0].isKerned, row.isKerned) << row.before << " " << row.after;
        EXPECT_NEAR(line->width, line->GetWidth(line->chars.begin(), line->chars.end()), 1e-12) << row.after;
    }
    // The rest of a gap that takes up a character is gone, not small.
    const Line absorbed = ParseLine("a6");
    absorbed->Kern(6 + 1e-6);
    EXPECT_EQ(absorbed->chars[0].width, 0);
    EXPECT_EQ(absorbed->width, 0);
    const Line empty = ParseLine("");
    empty->Kern(4);
    EXPECT_EQ(empty->position.x, -4);
    EXPECT_EQ(empty->width, 0);
}

TEST(TextLineTest, GivesSpacesTheFontsCodeAndNoDecoration)
{
    const Line line = ParseLine("a6");
    Char& c = line->chars[0];
    c.spaceCode = 3;
    c.glyphIndex = 65;
    c.atts = Changed(c.atts, [](Story::GlyphAtts& atts) {
        atts.Set(Underline, 1);
        atts.Set(Strikeout, 1);
        for (const Story::GlyphAtt::Object fill : {HighlightFill, UnderlineFill, StrikeoutFill})
            atts.Set(fill, MakePaint());
    });
    line->Kern(-5);
    ASSERT_EQ(line->chars.size(), 2);
    const Char& space = line->chars[1];
    EXPECT_EQ(space.unicode, 0);
    EXPECT_EQ(space.glyphIndex, 3);
    EXPECT_TRUE(space.isSpace);
    EXPECT_TRUE(space.atts == MakeAtts());
    EXPECT_EQ(line->chars[0].atts->Get(Underline), 1);
    EXPECT_EQ(line->GetText(), "a ");

    EXPECT_FALSE(line->HasUndefinedSpace());
    line->chars[0].isSpaceDefined = false;
    EXPECT_FALSE(line->HasUndefinedSpace());
    line->chars[1].isSpaceDefined = false;
    EXPECT_TRUE(line->HasUndefinedSpace());
}

TEST(TextLineTest, GoesOnNearItsEndOnly)
{
    const struct
    {
        double x;
        double y;
        double size;
        bool canMove;
    } rows[] = {
        // The line ends at 12, in 10 points.
        {12, 0, 10, true},
        {30, 0, 10, true},
        {30.001, 0, 10, false},
        {12 - 10.0 / 6, 0, 10, true},
        {12 - 1.667, 0, 10, false},
        {12, 1, 10, true},
        {12, -1, 10, true},
        {12, 1.001, 10, false},
        {12, -1.001, 10, false},
        // Sub- and superscripts: by half the larger size down, and three quarters up.
        {12, -3, 11, false},
        {12, -3, 11.01, true},
        {12, 3, 9, false},
        {12, 3, 6, true},
        {12, 7.49, 6, true},
        {12, 7.5, 6, false},
        {12, -5, 6, true},
        {12, -5.01, 6, false},
        {12, -10, 20, true},
        {12, -10.01, 20, false},
        {12, 14.99, 20, true},
        {12, 15, 20, false},
        {12, 3, 30, true},
        {12, 3, 30.01, false},
        {12, 1, 30.01, true},
        {31, 3, 6, false},
    };
    const Line line = ParseLine("a6 b6");
    for (const auto& row : rows) {
        EXPECT_EQ(line->CanMoveTo({row.x, row.y}, MakeAtts(row.size)), row.canMove)
            << row.x << " " << row.y << " " << row.size;
    }
    EXPECT_TRUE(ParseLine("")->CanMoveTo({1e9, -1e9}, MakeAtts()));
}

TEST(TextLineTest, MovesThePenOnAndOffTheBaseline)
{
    const int calls = InspectState("probe", {}, [](GraphicsState& state) {
        const Line line = ParseLine("a6");
        state.SetGlyphAtts(MakeAtts());
        line->MoveTo({9, 3}, state);
        EXPECT_EQ(PrintLine(*line), "a6 _3");
        EXPECT_EQ(state.advance, -3);
        EXPECT_EQ(state.glyphAtts->Get(BaselineShift), -3);
        const auto end = line->GetEndPosition(state);
        EXPECT_EQ(end.x, 9);
        EXPECT_EQ(end.y, 3);
        const Line empty = ParseLine("");
        empty->MoveTo({5, 6}, state);
        EXPECT_EQ(empty->position.x, 5);
        EXPECT_EQ(empty->position.y, 6);
        EXPECT_EQ(state.advance, 0);
        EXPECT_EQ(state.glyphAtts->Get(BaselineShift), 0);
    });
    EXPECT_EQ(calls, 1);
}

TEST(TextLineTest, HasTheBoxOfItsOutlines)
{
    const Line line =
        MakeLine({MakeChar(U'A', 7, MakeAtts()), MakeChar(U' ', 7, MakeAtts()), MakeChar(U'g', 7, MakeAtts(20, -4)),
                  MakeChar(U'y', 7, With(MakeAtts(10, 3), HorizontalScale, 0.5))});
    line->position = {10, -20};
    line->UpdateBBox();
    Geometry::PolyCurveDbl outlines;
    line->AppendOutlinesTo(outlines);
    // Two curves each for "A" and "g", one for "y".
    EXPECT_GE(outlines.curves.size(), 4);
    const auto drawn = outlines.GetExactBBox();
    EXPECT_NEAR(line->bbox.left, drawn.left, 1e-6);
    EXPECT_NEAR(line->bbox.top, drawn.top, 1e-6);
    EXPECT_NEAR(line->bbox.right, drawn.right, 1e-6);
    EXPECT_NEAR(line->bbox.bottom, drawn.bottom, 1e-6);
    EXPECT_TRUE(line->bbox.left > 10 && line->bbox.right < 38 && line->bbox.top < 8 && line->bbox.bottom > 23);

    // A turned line has its outlines on the page.
    line->SetTransform(Object::Params::FromPdf(0, 1, -1, 0, 50, 60));
    Geometry::PolyCurveDbl turned;
    line->AppendOutlinesTo(turned);
    EXPECT_NEAR(turned.GetExactBBox().left, line->transformedBBox.left, 1e-6);
    EXPECT_NEAR(turned.GetExactBBox().bottom, line->transformedBBox.bottom, 1e-6);

    const Line spaces = ParseLine("_6 _6");
    spaces->UpdateBBox();
    Geometry::PolyCurveDbl none;
    spaces->AppendOutlinesTo(none);
    EXPECT_TRUE(none.IsEmpty());
    EXPECT_TRUE(spaces->bbox.IsEmpty());
}

TEST(TextLineTest, HasUnderlinesInItsBox)
{
    const Atts underlined = Changed(MakeAtts(), [](Story::GlyphAtts& atts) { atts.Set(Underline, 1); });
    const Line line = MakeLine({MakeChar(U'a', 6, underlined), MakeChar(U' ', 9, underlined)});
    line->position = {10, -20};
    line->UpdateBBox();
    const Renderer::FontMetrics& metrics = *underlined->GetFontMetrics();
    EXPECT_GT(metrics.GetUnderlinePosition(), 0);
    EXPECT_EQ(line->bbox.left, 10);
    EXPECT_EQ(line->bbox.right, 25);
    EXPECT_NEAR(line->bbox.bottom, 20 + 10 * (metrics.GetUnderlinePosition() + metrics.GetUnderlineThickness()), 1e-9);
    EXPECT_LT(line->bbox.top, 16);
    const auto box = line->GetGdiTextBox();
    EXPECT_EQ(box, (Rect{10, 20, 25, 20}));
}

TEST(TextLineTest, MovesASlantFromTheLineToItsGlyphs)
{
    const struct
    {
        Params transform;
        bool isSlant;
    } rows[] = {
        {{1, -0.3, 0, 0, 1, 0}, true},   {{1, 0.3, 5, 0, 1, 6}, true},    {{1, 0.3, 0, 0.1, 1, 0}, false},
        {{1.1, 0.3, 0, 0, 1, 0}, false}, {{1, 0.3, 0, 0, 0.9, 0}, false}, {{1, 0, 5, 0, 1, 6}, false},
    };
    for (const auto& row : rows) {
        const Line line = MakeLine({MakeChar(U'A', 7, MakeAtts()), MakeChar(U'g', 7, With(MakeAtts(), Shear, 0.1))});
        line->position = {10, -20};
        line->SetClipPath(Kernel::MakeCounted<Geometry::PolyCurveDbl>(Rect{8, 5, 20, 25}),
                          Geometry::WindingOrderMode::EvenOdd);
        line->UpdateBBox();
        line->SetTransform(row.transform);
        const auto clipOnPage = line->clipPath->Clone();
        clipOnPage->Transform(row.transform);
        Geometry::PolyCurveDbl before;
        line->AppendOutlinesTo(before);
        line->MoveShearToGlyphs();
        const auto clipNow = line->clipPath->Clone();
        clipNow->Transform(line->transform);
        EXPECT_TRUE(clipNow->IsEqual(*clipOnPage, 1e-9)) << row.transform.c;
        EXPECT_EQ(line->clipWinding, Geometry::WindingOrderMode::EvenOdd);
        Geometry::PolyCurveDbl after;
        line->AppendOutlinesTo(after);
        EXPECT_TRUE(before.IsEqual(after, 1e-9)) << row.transform.a << " " << row.transform.c;
        EXPECT_EQ(line->transform, row.isSlant ? Params() : row.transform) << row.transform.c;
        EXPECT_NEAR(line->chars[1].atts->Get(Shear), 0.1 + (row.isSlant ? row.transform.c : 0), 1e-12);
    }
}

TEST(TextLineTest, TellsWhetherItPaints)
{
    const Atts filled = MakeAtts();
    const Atts unfilled = Changed(filled, [](Story::GlyphAtts& atts) {
        atts.Set(Story::GlyphAtt::Fill, Renderer::FillDescriptor::CreateNone());
    });
    const auto stroke = [&](double width, bool hasPaint) {
        return Changed(unfilled, [&](Story::GlyphAtts& atts) {
            if (hasPaint) atts.Set(StrokeFill, MakePaint());
            atts.Set(Story::GlyphAtt::LineStyle, Quillet::Test::MakeLine(width));
        });
    };
    const struct
    {
        TextLineObject::Chars chars;
        bool paints;
    } rows[] = {
        {{}, false},
        {{MakeChar(U'a', 6, filled)}, true},
        {{MakeChar(U' ', 6, filled), MakeChar(U'\t', 6, filled)}, false},
        {{MakeChar(U'a', 6, unfilled), MakeChar(U' ', 6, filled)}, false},
        {{MakeChar(U'a', 6, unfilled), MakeChar(U'a', 6, filled)}, true},
        {{MakeChar(U' ', 6, filled), MakeChar(U'a', 6, filled)}, true},
        {{MakeChar(U'a', 6, stroke(2, true))}, true},
        {{MakeChar(U'a', 6, stroke(2, false))}, false},
        {{MakeChar(U'a', 6, stroke(0, true))}, false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(MakeLine(row.chars)->HasFillOrStroke(), row.paints) << (&row - rows);
}

TEST(TextLineTest, CopiesAPartOfALineWhereItStands)
{
    const Line line = ParseLine("a6 b7 _3 c8 d9");
    line->chars[3].atts = MakeAtts(14);
    line->position = {10, 20};
    line->wordSpace = 2;
    line->isParagraphFront = line->needsLineBreak = true;
    line->SetBlendMode(Renderer::FillBlendMode::Multiply);
    line->SetTransform({1, 0, 5, 0, 1, 6});
    line->SetClipPath(Kernel::MakeCounted<Geometry::PolyCurveDbl>(Rect{0, -40, 99, 0}),
                      Geometry::WindingOrderMode::EvenOdd);
    line->UpdateBBox();
    const TestDocument document(MakePagePdf("", {.objects = {"<< /S /Alpha >>"}}));
    const auto mask = Kernel::MakeCounted<SoftMask>(Kernel::MakeCounted<Dictionary>(document.GetRef(5)),
                                                    document.document->GetPage(0));
    line->SetSoftMask(mask);
    const auto isHeld = [&](const TextLineObject& other) {
        return other.softMask == mask && other.transform == Params{1, 0, 5, 0, 1, 6} &&
               other.clipPath == line->clipPath && other.clipWinding == Geometry::WindingOrderMode::EvenOdd;
    };
    const TextLineObject copy(*line, 8, line->chars.begin() + 1, line->chars.end() - 1);
    EXPECT_TRUE(isHeld(copy));
    EXPECT_GT(copy.bbox.left, line->bbox.left);
    EXPECT_EQ(PrintLine(copy), "b7 _3 c8");
    EXPECT_EQ(copy.position.x, 16);
    EXPECT_EQ(copy.position.y, 20);
    EXPECT_EQ(copy.width, 18);
    EXPECT_EQ(copy.textHeight, 14);
    EXPECT_EQ(copy.id, 8);
    EXPECT_EQ(copy.blendMode, Renderer::FillBlendMode::Multiply);
    EXPECT_EQ(copy.wordSpace, 1);
    EXPECT_FALSE(copy.isParagraphFront || copy.needsLineBreak);
    line->Clear();
    EXPECT_TRUE(isHeld(*line) && line->clipPath);
    EXPECT_EQ(line->width, 0);
    EXPECT_EQ(line->textHeight, 0);
    EXPECT_EQ(line->wordSpace, 1);
    EXPECT_EQ(line->blendMode, Renderer::FillBlendMode::Normal);
}

TEST(TextLineTest, MeasuresWhatATextEngineWouldSet)
{
    const Atts sans = MakeAtts(10, 0, c_sans);
    const Renderer::FontMetrics& metrics = *sans->GetFontMetrics();
    const double a = metrics.GetGlyphMetrics(U'A').advance * 10;
    const double v = metrics.GetGlyphMetrics(U'V').advance * 10;
    const double space = metrics.GetGlyphMetrics(U' ').advance * 10;
    const double kern = metrics.GetAutoKerning(metrics.GetGlyphMetrics(U'A').id, metrics.GetGlyphMetrics(U'V').id) * 10;
    ASSERT_LT(kern, -0.3);
    const Atts spaced = With(sans, LetterSpacing, 0.1);
    const Atts narrow = With(sans, HorizontalScale, 0.5);
    const struct
    {
        const char* text;
        Atts first;
        Atts second;
        bool noAutoKern;
        double wordSpace;
        double width;
    } rows[] = {
        {"A", sans, sans, false, 1, a},
        {"AV", sans, sans, true, 1, a + v},
        {"AV", sans, sans, false, 1, a + kern + v},
        {"AV", With(sans, Kerning, -1), sans, false, 1, a + v},
        {"AV", sans, With(sans, Size, 11), false, 1, a + v * 1.1},
        {"AV", sans, With(sans, Shear, 0.2), false, 1, a + kern + v},
        {"AV", spaced, spaced, false, 1, a + kern + v + 2},
        {"AV", narrow, narrow, false, 1, (a + kern + v) / 2},
        {"AV", With(sans, LetterSpacing, -5), sans, false, 1, v},
        {"A ", sans, sans, true, 1.5, a + space * 1.5},
        {"A ", sans, spaced, true, 2, a + (space + 1) * 2},
        {"A\t", sans, spaced, false, 2, a + 33},
    };
    for (const auto& row : rows) {
        TextLineObject::Chars chars;
        for (const char* c = row.text; *c != 0; ++c) {
            chars.push_back(MakeChar(static_cast<unsigned char>(*c), 33, c == row.text ? row.first : row.second));
        }
        const Line line = MakeLine(std::move(chars));
        EXPECT_NEAR(line->GetStoryWidth(line->chars.begin(), line->chars.end(), row.noAutoKern, row.wordSpace),
                    row.width, 1e-9)
            << row.text << " " << (&row - rows);
    }
    // A part kerns with what follows it on the line.
    const Line line = MakeLine({MakeChar(U'A', 6, sans), MakeChar(U'V', 6, sans)});
    EXPECT_NEAR(line->GetStoryWidth(line->chars.begin(), line->chars.begin() + 1, false, 1), a + kern, 1e-9);
}

TEST(CharTest, MeasuresItsSpaceByTheFonts)
{
    const struct
    {
        double width;
        double letterSpacing;
        double scale;
        double ratio;
    } rows[] = {
        {6, 0, 1, 1},
        {12, 0, 1, 2},
        {3, 0, 1, 0.5},
        {12, 0.1, 1, 2.2},
        {12, 0.1, 0.5, 4.6},
        // Letter spacing that leaves nothing of the space to measure by, or of this one.
        {12, 0.6, 1, 1},
        {12, 0.7, 1, 1},
        {1, 0.1, 1, 1},
        {0.5, 0.1, 1, 1},
    };
    for (const auto& row : rows) {
        const Atts atts = With(With(MakeAtts(), LetterSpacing, row.letterSpacing), HorizontalScale, row.scale);
        const Char c = MakeChar(U' ', row.width, atts);
        EXPECT_NEAR(c.GetWordSpace(), row.ratio, 1e-9) << row.width << " " << row.letterSpacing;
        EXPECT_NEAR(c.GetFontWidthOf(U'x'), 6 * row.scale, 1e-9);
    }
    // A glyph without a character is measured by its number.
    Char c = MakeChar(U'W', 6, MakeAtts(10, 0, c_sans));
    const int id = c.GetGlyphMetrics().id;
    const double advance = c.GetGlyphMetrics().advance;
    c.unicode = 0;
    c.glyphIndex = id;
    EXPECT_EQ(c.GetGlyphMetrics().advance, advance);
}

/// Each character as its code point, glyph, code and width, and "s" for a space.
std::string PrintChars(const TextLineObject::Chars& chars)
{
    std::string text;
    for (const Char& c : chars) {
        std::ostringstream out;
        out << std::hex << std::uppercase << static_cast<unsigned long>(c.unicode) << std::dec << '/' << c.glyphIndex
            << '/' << c.charCode << '/' << ToText(c.width) << (c.isSpace ? "s" : "");
        text += (text.empty() ? "" : " ") + out.str();
    }
    return text;
}

TEST(CharTest, ComesFromWhatACodeStandsFor)
{
    const struct
    {
        const char* content;
        std::vector<char32_t> sequence;
        int code;
        double width;
        const char* chars;
    } rows[] = {
        {"", {'a'}, 5, 600, "61/5/-1/6"},
        {"", {0xD83D, 0xDE00}, 7, 600, "1F600/7/-1/6"},
        {"", {'a', 0xD83D, 0xDE00}, 7, 0, "61/-1/7/0 1F600/-1/-1/0"},
        {"", {0xD83D}, 7, 600, "D83D/7/-1/6"},
        // As the letters of the machine's font: 278 and 222.
        {"", {'f', 'i'}, 5, 500, "66/-1/5/2.78 69/-1/-1/2.22"},
        // Letter spacing stands behind the glyph, however many letters that is.
        {"2 Tc ", {'f', 'i'}, 5, 500, "66/-1/5/2.78 69/-1/-1/4.22"},
        {"", {}, 5, 500, "20/-1/5/5s"},
        {"", {}, 5, 0, ""},
        {"1 Tc ", {}, 5, 0, ""},
        {"", {0xFFFD}, 0, 0, ""},
        {"", {0xFFFF}, 0, 0, ""},
        {"", {0}, -1, 0, ""},
        {"", {0}, 0, 500, "20/0/-1/5s"},
        {"", {0xFFFD}, 3, 0, "0/3/-1/0"},
        {"", {0xFFFD}, 3, 500, "0/3/-1/5"},
        {"3 Tw 1 Tc ", {'a'}, 3, 500, "61/3/-1/6"},
        {"3 Tw 1 Tc ", {' '}, 3, 500, "20/3/-1/9s"},
        {"3 Tw 1 Tc ", {0xA0}, 3, 500, "A0/3/-1/9s"},
        {"3 Tw 1 Tc ", {0xF020}, 3, 500, "F020/3/-1/9s"},
        {"3 Tw 1 Tc ", {'\t'}, 3, 500, "20/3/-1/6s"},
        {"3 Tw 1 Tc 50 Tz ", {' '}, 3, 500, "20/3/-1/4.5s"},
    };
    for (const auto& row : rows) {
        const std::string content = std::string("BT /F 10 Tf ") + row.content + "(x) Tj probe ET";
        const PageParts parts{.resources = "/Font << /F 5 0 R >>", .objects = {MakeFont(c_sans)}};
        const int calls = InspectState(content, parts, [&](GraphicsState& state) {
            CodeSequence sequence;
            for (const char32_t value : row.sequence)
                sequence.Add(value);
            TextLineObject::Chars chars;
            const double advance = state.AddChars(chars, sequence, row.code, row.width);
            EXPECT_EQ(PrintChars(chars), row.chars) << content;
            double sum = 0;
            for (const Char& c : chars) {
                sum += c.width;
                EXPECT_TRUE(c.atts == state.glyphAtts);
                EXPECT_TRUE(c.isFontAvailable && c.isSpaceDefined && !c.isKerned);
            }
            EXPECT_NEAR(advance, sum, 1e-12);
        });
        EXPECT_EQ(calls, 1);
    }
}

} // namespace
} // namespace Quillet::Test
