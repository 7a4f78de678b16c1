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
#include <random>
#include <sstream>
#include <tuple>

namespace Quillet::Test {
namespace {

using namespace Story::GlyphAtt;

/// The line, and how far its start has moved, if it has.
std::string CleanUp(const char* words)
{
    std::string text;
    // Whatever is to become of the text: an advance of a font without a space is no gap.
    for (const TextFidelity fidelity : {TextFidelityEditable, TextFidelityExact}) {
        const Line line = At(100, 50, ParseLine(words));
        line->fidelity = fidelity;
        line->OnEndOfLine();
        EXPECT_EQ(line->position.y, 50) << words;
        EXPECT_NEAR(line->width, GetWidth(*line), 1e-9) << words;
        EXPECT_EQ(line->textHeight, line->chars.empty() ? 0 : line->chars[0].GetSize()) << words;
        const std::string start = ToText(line->position.x - 100);
        const std::string cleaned = PrintLine(*line) + (start == "0" ? "" : " from " + start);
        EXPECT_TRUE(fidelity == TextFidelityEditable || cleaned == text) << words;
        text = cleaned;
    }
    return text;
}

TEST(TextLineTest, CleansUpAtTheEndOfTheLine)
{
    EXPECT_EQ(CleanUp(""), "");
    EXPECT_EQ(CleanUp("a6 b6"), "a6 b6");
    // Spaces at the ends.
    EXPECT_EQ(CleanUp("_3 _2 a6"), "a6 from 5");
    EXPECT_EQ(CleanUp(">4 _2 a6 >4"), "a6 >4 from 6");
    EXPECT_EQ(CleanUp("a6 _2^ _3"), "a6");
    EXPECT_EQ(CleanUp("_3 _3^"), " from 6");
    EXPECT_EQ(CleanUp("_3"), " from 3");
    // Spaces in a row, thin spaces, and those that look another way.
    EXPECT_EQ(CleanUp("a6 _2 _3 b6"), "a6 _5 b6");
    EXPECT_EQ(CleanUp("a6 _2 _3 _0.5 b6"), "a6 _5.5 b6");
    EXPECT_EQ(CleanUp("a6 _2 _3^ b6"), "a6 _2 _3 b6");
    EXPECT_EQ(CleanUp("a6 _0.99 b6"), "a6.99 b6");
    EXPECT_EQ(CleanUp("a6 _0.5 _0.5 b6"), "a7 b6");
    EXPECT_EQ(CleanUp("a6 _1 b6"), "a6 _1 b6");
    EXPECT_EQ(CleanUp("a6 _0.5^ b6"), "a6 _0.5 b6");
    EXPECT_EQ(CleanUp("a2@4 _0.49@4 b2@4"), "a2.49 b2");
    EXPECT_EQ(CleanUp("a2@4 _0.51@4 b2@4"), "a2 _0.51 b2");
    EXPECT_EQ(CleanUp("a2@20 _0.99@20 b2@20"), "a2.99 b2");
    // Hyphens.
    EXPECT_EQ(CleanUp("a6 ~6 b6 ~6"), "a6 =6 b6 =6");
    // An advance that has a space in it: half a size, or a sixth where a gap was asked for.
    EXPECT_EQ(CleanUp("a10.99 b6"), "a10.99 b6");
    EXPECT_EQ(CleanUp("a11.01 b6"), "a6 _5.01 b6");
    EXPECT_EQ(CleanUp("a7.66! b6"), "a7.66 b6");
    EXPECT_EQ(CleanUp("a7.67! b6"), "a6 _1.67 b6");
    EXPECT_EQ(CleanUp("a11.5 _6 b6"), "a6 _11.5 b6");
    EXPECT_EQ(CleanUp("a11.5 b11.5 c6"), "a6 _5.5 b6 _5.5 c6");
    EXPECT_EQ(CleanUp("a6 b11.5"), "a6 b6");
    EXPECT_EQ(CleanUp("a99? b6"), "a99 b6");
    EXPECT_EQ(CleanUp("a2 b6"), "a2 b6");
    // Negative advances. A last one says nothing.
    EXPECT_EQ(CleanUp("a-5"), "a5 from -5");
    EXPECT_EQ(CleanUp("a6 b-2"), "a6 b6");
    EXPECT_EQ(CleanUp("a-5 b6"), "b5 a1 from -5");
    EXPECT_EQ(CleanUp("a6 b-2 c6"), "a4 c2 b4");
    EXPECT_EQ(CleanUp("a6 _-3 b6"), "a3 b3");
    EXPECT_EQ(CleanUp("c-6 b-6 a6"), "a6 b6 c6 from -12");
    EXPECT_EQ(CleanUp("c-12 b-12 a6"), "a6 _6 b6 _6 c6 from -24");
}

TEST(TextLineTest, PutsGlyphsInReadingOrderWithoutMovingThem)
{
    std::mt19937 random(1);
    for (int round = 0; round < 300; ++round) {
        TextLineObject::Chars chars;
        const char32_t count = round % 20 == 0 ? 100 : 2 + static_cast<char32_t>(round % 20);
        for (char32_t i = 0; i < count; ++i)
            chars.push_back(MakeChar(U'A' + i, static_cast<double>(random() % 241) / 10 - 12, MakeAtts()));
        chars.back().width = std::abs(chars.back().width);
        const Line line = MakeLine(std::move(chars));
        auto expected = GetPlaces(*line);
        line->OnEndOfLine();
        auto places = GetPlaces(*line);
        for (std::size_t i = 0; i + 1 < line->chars.size(); ++i)
            EXPECT_GE(line->chars[i].width, 0) << round;
        EXPECT_NEAR(line->width, GetWidth(*line), 1e-9) << round;
        std::ranges::sort(expected);
        std::ranges::sort(places);
        EXPECT_EQ(places, expected) << round;
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

/// How far below the pen the baseline of a line is.
double GetBaseline(const char* words)
{
    const Line line = ParseLine(words);
    const auto places = GetPlaces(*line);
    line->OnEndOfLine();
    EXPECT_EQ(GetPlaces(*line), places) << words;
    return -line->position.y;
}

TEST(TextLineTest, TakesTheBaselineOfTheLargestText)
{
    EXPECT_NEAR(GetBaseline("a6 b6@6:-3"), 0, 1e-9) << "smaller text above";
    EXPECT_NEAR(GetBaseline("a6@6 b6:3 c6:3"), 3, 1e-9) << "larger text below";
    EXPECT_NEAR(GetBaseline("a6:-2 b6:3 c6:3"), 3, 1e-9) << "more text";
    EXPECT_NEAR(GetBaseline("a6:-4"), -4, 1e-9) << "alone";
    EXPECT_NEAR(GetBaseline("a6:5 b6:-1"), -1, 1e-9) << "as often, the one nearest to the pen";
    EXPECT_NEAR(GetBaseline("a6:2 b6@10.0005:2 c6@9.99"), 2, 1e-9) << "sizes that are the same";
    EXPECT_NEAR(GetBaseline("a6:0.06"), 0.06, 1e-9) << "enough to show";
    EXPECT_NEAR(GetBaseline("'6@12 T6@36:24 o6@12"), 0, 1e-9) << "a cap with a quote";
    EXPECT_NEAR(GetBaseline("T6@24:10 o6@12"), 10, 1e-9) << "not twice as large";
    EXPECT_NEAR(GetBaseline("T6@36 o6@12"), 0, 1e-9) << "not lower";
    EXPECT_NEAR(GetBaseline("T6@36:-9 o6@12"), -9, 1e-9) << "higher";
    EXPECT_NEAR(GetBaseline("T6@36:9 o6@12 o6@20"), 9, 1e-9) << "large text behind";
    EXPECT_NEAR(GetBaseline("T6@36:20 o6@12:5 p6@12:5 s6@6:2"), 5, 1e-9) << "the text is off";
    EXPECT_NEAR(GetBaseline("'6@12 T6@36:9"), 9, 1e-9) << "nothing behind";
    const Line unseen = ParseLine("a6:0.05");
    unseen->OnEndOfLine();
    EXPECT_NEAR(unseen->position.y, -0.05, 1e-9);
    EXPECT_EQ(unseen->chars[0].atts->Get(BaselineShift), 0.05);
}

/// The line with the gaps at its end, and "!" where its first character has one behind it.
std::string Kern(const char* words, const std::vector<double>& gaps)
{
    const Line line = ParseLine(words);
    for (const double gap : gaps)
        line->Kern(-gap);
    EXPECT_NEAR(line->width, GetWidth(*line), 1e-12) << words;
    return PrintLine(*line) + (line->chars[0].isKerned ? "!" : "");
}

TEST(TextLineTest, TurnsGapsIntoSpacesOrWidth)
{
    const double sixth = 10.0 / 6;
    EXPECT_EQ(Kern("a6", {0}), "a6");
    EXPECT_EQ(Kern("a6", {sixth}), "a6 _1.6667!");
    EXPECT_EQ(Kern("a6", {std::nextafter(sixth, 0)}), "a7.6667!");
    EXPECT_EQ(Kern("a6", {2, -1}), "a6 _1!");
    EXPECT_EQ(Kern("a6", {2, 30}), "a6 _32!");
    EXPECT_EQ(Kern("a6 _6", {30}), "a6 _36");
    EXPECT_EQ(Kern("a6 _6", {-7}), "a6 _-1");
    EXPECT_EQ(Kern("a6!", {-3}), "a3");
    EXPECT_EQ(Kern("a6", {-6.1}), "a-0.1");
    EXPECT_EQ(Kern("a6?", {50}), "a56!");
    // The rest of a gap that takes up a character is gone, not small.
    const Line absorbed = ParseLine("a6");
    absorbed->Kern(6 + 1e-6);
    EXPECT_TRUE(absorbed->chars[0].width == 0 && absorbed->width == 0);
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
    const Char& space = line->chars.at(1);
    EXPECT_EQ(space.unicode, 0);
    EXPECT_EQ(space.glyphIndex, 3);
    EXPECT_TRUE(space.isSpace);
    EXPECT_TRUE(space.atts == MakeAtts());
    EXPECT_EQ(line->chars[0].atts->Get(Underline), 1);
    EXPECT_EQ(line->GetText(), "a ");

    line->chars[0].isSpaceDefined = false;
    EXPECT_FALSE(line->HasUndefinedSpace());
    line->chars[1].isSpaceDefined = false;
    EXPECT_TRUE(line->HasUndefinedSpace());
}

TEST(TextLineTest, GoesOnNearItsEndOnly)
{
    // The line ends at 12, in 10 points.
    struct Pen
    {
        double x, y, size;
    };
    // Sub- and superscripts go half the larger size down, and three quarters up.
    const Pen near[] = {{12, 0, 10},   {30, 0, 10},    {12 - 10.0 / 6, 0, 10}, {12, 1, 10},
                        {12, -1, 10},  {12, 1, 30.01}, {12, -3, 11.01},        {12, 3, 6},
                        {12, 7.49, 6}, {12, -5, 6},    {12, -10, 20},          {12, 14.99, 20},
                        {12, 3, 30}};
    const Pen far[] = {{30.001, 0, 10},  {12 - 1.667, 0, 10}, {12, 1.001, 10}, {12, -1.001, 10},
                       {12, -3, 11},     {12, 3, 9},          {12, 7.5, 6},    {12, -5.01, 6},
                       {12, -10.01, 20}, {12, 15, 20},        {12, 3, 30.01},  {31, 3, 6}};
    const Line line = ParseLine("a6 b6");
    for (const Pen& pen : near)
        EXPECT_TRUE(line->CanMoveTo({pen.x, pen.y}, MakeAtts(pen.size))) << pen.x << " " << pen.y << " " << pen.size;
    for (const Pen& pen : far)
        EXPECT_FALSE(line->CanMoveTo({pen.x, pen.y}, MakeAtts(pen.size))) << pen.x << " " << pen.y << " " << pen.size;
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
        EXPECT_EQ(line->GetEndPosition(state), (Kernel::PointT<double>{9, 3}));
        const Line empty = ParseLine("");
        empty->MoveTo({5, 6}, state);
        EXPECT_EQ(empty->position, (Kernel::PointT<double>{5, 6}));
        EXPECT_EQ(state.advance, 0);
        EXPECT_EQ(state.glyphAtts->Get(BaselineShift), 0);
    });
    EXPECT_EQ(calls, 1);
}

Geometry::PolyCurveDbl GetOutlines(const TextLineObject& line)
{
    Geometry::PolyCurveDbl outlines;
    line.AppendOutlinesTo(outlines);
    return outlines;
}

TEST(TextLineTest, HasTheBoxOfItsOutlines)
{
    const Line line = ParseLine("A7 _7 g7@20:-4 y7:3");
    line->chars[3].atts = With(line->chars[3].atts, HorizontalScale, 0.5);
    At(10, -20, line);
    // Two curves each for "A" and "g", one for "y".
    EXPECT_GE(GetOutlines(*line).curves.size(), 4);
    EXPECT_TRUE(IsNear(line->bbox, GetOutlines(*line).GetExactBBox(), 1e-6));
    EXPECT_TRUE(line->bbox.left > 10 && line->bbox.right < 38 && line->bbox.top < 8 && line->bbox.bottom > 23);

    // A turned line has its outlines on the page.
    line->SetTransform(Params::FromPdf(0, 1, -1, 0, 50, 60));
    EXPECT_TRUE(IsNear(line->transformedBBox, GetOutlines(*line).GetExactBBox(), 1e-6));

    const Line spaces = At(0, 0, ParseLine("_6 _6"));
    EXPECT_TRUE(GetOutlines(*spaces).IsEmpty());
    EXPECT_TRUE(spaces->bbox.IsEmpty());
}

TEST(TextLineTest, HasUnderlinesInItsBox)
{
    const Atts underlined = Changed(MakeAtts(), [](Story::GlyphAtts& atts) { atts.Set(Underline, 1); });
    const Line line = At(10, -20, MakeLine({MakeChar(U'a', 6, underlined), MakeChar(U' ', 9, underlined)}));
    const Renderer::FontMetrics& metrics = *underlined->GetFontMetrics();
    const double descent = metrics.GetUnderlinePosition() + metrics.GetUnderlineThickness();
    EXPECT_GT(descent, 0);
    EXPECT_LT(line->bbox.top, 16);
    EXPECT_TRUE(IsNear(line->bbox, {10, line->bbox.top, 25, 20 + 10 * descent}, 1e-9));
    EXPECT_EQ(line->GetGdiTextBox(), (Rect{10, 20, 25, 20}));
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
        SCOPED_TRACE(&row - rows);
        const Line line =
            At(10, -20, MakeLine({MakeChar(U'A', 7, MakeAtts()), MakeChar(U'g', 7, With(MakeAtts(), Shear, 0.1))}));
        line->SetClipPath(MakeRectangle({8, 5, 20, 25}), Geometry::WindingOrderMode::EvenOdd);
        line->SetTransform(row.transform);
        const auto getClip = [&] {
            const auto clip = line->clipPath->Clone();
            clip->Transform(line->transform);
            return clip;
        };
        const auto clip = getClip();
        const auto outlines = GetOutlines(*line);
        line->MoveShearToGlyphs();
        EXPECT_TRUE(getClip()->IsEqual(*clip, 1e-9));
        EXPECT_EQ(line->clipWinding, Geometry::WindingOrderMode::EvenOdd);
        EXPECT_TRUE(GetOutlines(*line).IsEqual(outlines, 1e-9));
        EXPECT_EQ(line->transform, row.isSlant ? Params() : row.transform);
        EXPECT_NEAR(line->chars[1].atts->Get(Shear), 0.1 + (row.isSlant ? row.transform.c : 0), 1e-12);
    }
}

TEST(TextLineTest, BlanksPaintNothing)
{
    EXPECT_TRUE(ParseLine("_6 a6")->HasFillOrStroke());
    EXPECT_FALSE(ParseLine("_6 >6")->HasFillOrStroke());
    const Line line = ParseLine("a6 a6 _6");
    line->chars[0].atts = Changed(MakeAtts(), [](Story::GlyphAtts& atts) {
        atts.Set(Story::GlyphAtt::Fill, Renderer::FillDescriptor::CreateNone());
    });
    EXPECT_TRUE(line->HasFillOrStroke());
    line->chars.erase(line->chars.begin() + 1);
    EXPECT_FALSE(line->HasFillOrStroke());
}

TEST(TextLineTest, CopiesAPartOfALineWhereItStands)
{
    const Line line = At(10, 20, ParseLine("a6 b7 _3 c8@14 d9"));
    line->wordSpace = 2;
    line->isParagraphFront = line->needsLineBreak = true;
    line->SetBlendMode(Renderer::FillBlendMode::Multiply);
    line->SetTransform({1, 0, 5, 0, 1, 6});
    line->SetClipPath(MakeRectangle({0, -40, 99, 0}), Geometry::WindingOrderMode::EvenOdd);
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
    EXPECT_EQ(GetPlaces(copy).front(), GetPlaces(*line).at(1));
    EXPECT_EQ(copy.width, 18);
    EXPECT_EQ(copy.textHeight, 14);
    EXPECT_EQ(copy.id, 8);
    EXPECT_EQ(copy.blendMode, Renderer::FillBlendMode::Multiply);
    EXPECT_EQ(copy.wordSpace, 1);
    EXPECT_FALSE(copy.isParagraphFront || copy.needsLineBreak);
    line->Clear();
    EXPECT_TRUE(isHeld(*line) && line->clipPath);
    EXPECT_TRUE(line->width == 0 && line->textHeight == 0 && line->wordSpace == 1);
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
    const auto measure = [](const Atts& first, char32_t next, const Atts& second, bool noAutoKern = false,
                            double wordSpace = 1) {
        const Line line = MakeLine({MakeChar(U'A', 33, first), MakeChar(next, 33, second)});
        return line->GetStoryWidth(line->chars.begin(), line->chars.end(), noAutoKern, wordSpace);
    };
    EXPECT_NEAR(measure(sans, U'V', sans, true), a + v, 1e-9);
    EXPECT_NEAR(measure(sans, U'V', sans), a + kern + v, 1e-9);
    EXPECT_NEAR(measure(With(sans, Kerning, -1), U'V', sans), a + v, 1e-9);
    EXPECT_NEAR(measure(sans, U'V', With(sans, Size, 11)), a + v * 1.1, 1e-9);
    EXPECT_NEAR(measure(sans, U'V', With(sans, Shear, 0.2)), a + kern + v, 1e-9);
    EXPECT_NEAR(measure(spaced, U'V', spaced), a + kern + v + 2, 1e-9);
    EXPECT_NEAR(measure(narrow, U'V', narrow), (a + kern + v) / 2, 1e-9);
    EXPECT_NEAR(measure(With(sans, LetterSpacing, -5), U'V', sans), v, 1e-9);
    EXPECT_NEAR(measure(sans, U' ', spaced, true, 1.5), a + (space + 1) * 1.5, 1e-9);
    EXPECT_NEAR(measure(sans, U'\t', spaced, false, 2), a + 33, 1e-9);
    // A part kerns with what follows it on the line.
    const Line line = MakeLine({MakeChar(U'A', 6, sans), MakeChar(U'V', 6, sans)});
    EXPECT_NEAR(line->GetStoryWidth(line->chars.begin(), line->chars.begin() + 1, false, 1), a + kern, 1e-9);
}

TEST(CharTest, MeasuresItsSpaceByTheFonts)
{
    // Letter spacing may leave nothing of the space to measure by, or of this one.
    const std::tuple<double, double, double, double> rows[] = {
        {6, 0, 1, 1},    {12, 0, 1, 2},   {3, 0, 1, 0.5}, {12, 0.1, 1, 2.2}, {12, 0.1, 0.5, 4.6},
        {12, 0.6, 1, 1}, {12, 0.7, 1, 1}, {1, 0.1, 1, 1}, {0.5, 0.1, 1, 1},
    };
    for (const auto& [width, letterSpacing, scale, ratio] : rows) {
        const Atts atts = With(With(MakeAtts(), LetterSpacing, letterSpacing), HorizontalScale, scale);
        const Char c = MakeChar(U' ', width, atts);
        EXPECT_NEAR(c.GetWordSpace(), ratio, 1e-9) << width << " " << letterSpacing;
        EXPECT_NEAR(c.GetFontWidthOf(U'x'), 6 * scale, 1e-9);
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
