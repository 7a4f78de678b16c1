#include <Quillet/TextLineObject.h>

#include "MakeLines.h"

#include <Story/TabStops.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace Quillet::Test {
namespace {

using namespace Story::GlyphAtt;
using Chars = TextLineObject::Chars;

/// As `PrintLine`, with the letter spacing in ems behind a "+".
std::string PrintSpacing(const TextLineObject& line)
{
    std::string text;
    for (const Char& c : line.chars) {
        const std::string spacing = ToText(c.atts->Get(LetterSpacing));
        text += (text.empty() ? "" : " ") + PrintLine(*MakeLine({c})) + (spacing == "0" ? "" : "+" + spacing);
    }
    return text;
}

/// The line, spaced, and how wide its spaces are, if they are not as the font has them.
std::string Space(const char* words, TextFidelity fidelity)
{
    const Line line = ParseLine(words);
    const double width = line->width;
    line->fidelity = fidelity;
    line->OnLineComplete();
    EXPECT_NEAR(line->width, GetWidth(*line), 1e-9) << words;
    EXPECT_NEAR(line->width, width, 1e-9) << words;
    return PrintSpacing(*line) + (line->wordSpace == 1 ? "" : " by " + ToText(line->wordSpace));
}

std::string SpaceExact(const char* words)
{
    return Space(words, TextFidelityExact);
}

std::string SpaceEditable(const char* words)
{
    return Space(words, TextFidelityEditable);
}

TEST(TextLineSpacingTest, FindsTheSpacingOfALine)
{
    EXPECT_EQ(SpaceExact(""), "");
    EXPECT_EQ(SpaceEditable("a9"), "a9");
    // Even tracking, and two kinds of it. The last character says nothing of its own.
    EXPECT_EQ(SpaceExact("a6.5 b6.5 c6.5 d1"), "a6.5+0.05 b6.5+0.05 c6.5+0.05 d1+0.05");
    EXPECT_EQ(SpaceExact("a6.02 b6.02 c6"), "a6.02+0.002 b6.02+0.002 c6+0.002");
    EXPECT_EQ(SpaceEditable("a6.623 b6.623 c6.623 d6"), "a6.623+0.062 b6.623+0.062 c6.623+0.062 d6+0.062");
    EXPECT_EQ(SpaceExact("a6.5 b6.5 c7 d7 e7"), "a6.5+0.05 b6.5+0.05 c7+0.1 d7+0.1 e7+0.1");
    EXPECT_EQ(SpaceEditable("a6.7 b6.7 c7.4 d7.4 e7"), "a6.7+0.07 b6.7+0.07 c7.4+0.14 d7.4+0.14 e7+0.14");
    EXPECT_EQ(SpaceEditable("a6.7 b6.7 c7.1 d7.1 e7"), "a6.7+0.09 b6.7+0.09 c7.1+0.09 d7.1+0.09 e7+0.09");
    // The last but one is no run; what is left goes to all.
    EXPECT_EQ(SpaceExact("a6.5 b6.5 c7.1 d7"), "a6.5+0.07 b6.5+0.07 c7.1+0.07 d7+0.07");
    EXPECT_EQ(SpaceEditable("a6.7 b6.7 c6 d6"), "a6.7+0.07 b6.7+0.07 c6+0.07 d6+0.07");
    // As a whole: by a twentieth of an em, or by a point.
    EXPECT_EQ(SpaceEditable("a6.4 b6.4 c6"), "a6.4 b6.4 c6");
    EXPECT_EQ(SpaceEditable("a6.4 b6.4 c6.4 d6"), "a6.4+0.04 b6.4+0.04 c6.4+0.04 d6+0.04");
    EXPECT_EQ(SpaceEditable("a6.62% b6"), "a6.62+0.06 b6+0.06");
    EXPECT_EQ(SpaceEditable("a6.5% b6"), "a6.5 b6");
    EXPECT_EQ(SpaceExact("a6.5% b5.9% c6"), "a6.5+0.02 b5.9+0.02 c6+0.02");
    EXPECT_EQ(SpaceExact("a6 _9 >9 b6 _9 c6"), "a6 _9 >9 b6 _9 c6 by 1.5");
    // A space takes up what is off before it.
    EXPECT_EQ(SpaceEditable("a6 b6.8% _6 c6"), "a6 b6 _6.8 c6 by 1.1333");
    EXPECT_EQ(SpaceEditable("a6 b5.2% _6 c6"), "a6 b6 _5.2 c6");
    EXPECT_EQ(SpaceEditable("a6 b5.2% _1.79 c6"), "a6 b6.99 c6");
    EXPECT_EQ(SpaceEditable("a6 b5.2% _1.81 c6"), "a6 b6 _1.01 c6");
    EXPECT_EQ(SpaceEditable("a6 b5.2% _1 c6"), "a6 b5.2 _1 c6");
    EXPECT_EQ(SpaceEditable("a6 b5.2% _0.8 c6"), "a6 b5 _1 c6");
    // How wide spaces are.
    EXPECT_EQ(SpaceEditable("a6 _9 b6 _9 c6 _18 d6"), "a6 _9 b6 _9 c6 _18 d6 by 1.5");
    EXPECT_EQ(SpaceEditable("a6 _8.4 b6"), "a6 _8.4 b6 by 1.4");
    EXPECT_EQ(SpaceEditable("a6 _9.1 b6 _15 c6"), "a6 _9.1 b6 _15 c6");
    EXPECT_EQ(SpaceEditable("a6 _12 b6 _12 c6"), "a6 _12 b6 _12 c6 by 2");
    EXPECT_EQ(SpaceEditable("a6 _3 b6 _3 c6"), "a6 _3 b6 _3 c6");
    // To look the same, each space brings the pen back.
    EXPECT_EQ(SpaceExact("a6 _6 b6 _7 c6 _6 d6"), "a6 _6 b6 _7+0.1 c6 _6 d6");
    EXPECT_EQ(SpaceExact("a6 _6 b6 _6.4 c6 _6.4 d6 _6 e6"), "a6 _6 b6 _6.4 c6 _6.4+0.08 d6 _6 e6");
    EXPECT_EQ(SpaceExact("a6 _9 b6 _9 c6 _10.2 d6"), "a6 _9 b6 _9 c6 _10.2+0.08 d6 by 1.5");
    EXPECT_EQ(SpaceExact("a6 _6 b6 _6 c6 _15 d6"), "a6 _6 b6 _6 c6 _15 d6");
    EXPECT_EQ(SpaceExact("b0% a6% _6 c12% d6%"), "b0 a6 _6+-0.59 c12 d6");
}

TEST(TextLineSpacingTest, SeesWhetherPairsWereKerned)
{
    const Atts sans = MakeAtts(10, 0, c_sans);
    for (const bool isKerned : {false, true}) {
        Chars chars;
        for (const char c : std::string("AVxAVxAVx"))
            chars.push_back(MakeChar(static_cast<unsigned char>(c), 0, sans));
        const Line line = MakeLine(std::move(chars));
        double sum = 0;
        for (auto c = line->chars.begin(); c != line->chars.end(); ++c) {
            EXPECT_NEAR(line->GetStoryAutoKern(c), line->GetStoryWidth(c) - line->GetStoryWidth(c, c + 1, true, 1),
                        1e-9);
            sum += std::abs(line->GetStoryAutoKern(c));
            c->width = line->GetStoryWidth(c, c + 1, !isKerned, 1);
        }
        EXPECT_GT(sum, 1);
        line->OnLineComplete();
        for (const Char& c : line->chars) {
            EXPECT_EQ(c.atts->Get(Kerning), isKerned ? 0 : -1);
            EXPECT_NEAR(c.atts->Get(LetterSpacing), 0, 1e-9);
        }
    }
}

TEST(TextLineSpacingTest, KnowsSpacesOfAFixedWidth)
{
    const Atts atts = MakeAtts(10, 0, "DejaVuSans");
    const double a = atts->GetFontMetrics()->GetGlyphMetrics(U'a').advance * 10;
    const std::pair<double, char32_t> rows[] = {{5.14, 0x2002}, {5.16, U' '}, {9.86, 0x2003}, {9.84, U' '}};
    for (const auto& [width, space] : rows) {
        const Line line = MakeLine({MakeChar(U'a', a, atts), MakeChar(U' ', width, atts), MakeChar(U'a', a, atts)});
        line->fidelity = TextFidelityEditable;
        line->OnLineComplete();
        EXPECT_EQ(line->chars[1].unicode, space) << width;
    }
}

TEST(TextLineSpacingTest, GivesSpacesTheFontTheyHaveTheirWidthIn)
{
    const auto getSize = [](const char* words) {
        const Line line = ParseLine(words);
        line->fidelity = TextFidelityEditable;
        line->OnLineComplete();
        EXPECT_EQ(line->textHeight, line->GetTextHeight(line->chars.begin(), line->chars.end()));
        return line->chars[1].GetSize();
    };
    EXPECT_EQ(getSize("a6 _12 a12@20"), 20);
    EXPECT_EQ(getSize("a12@20 _12 a6"), 20);
    EXPECT_EQ(getSize("a6 _6@20 a12@20"), 10);
    EXPECT_EQ(getSize("a12@20 _6 a12@20"), 10);
    EXPECT_EQ(getSize("a12@20 _9 a9@15"), 15);
    EXPECT_EQ(getSize("a6 _8.9 a12@20"), 10);
}

TEST(TextLineSpacingTest, MakesLettersOfLigaturesToBeEdited)
{
    const std::pair<char32_t, const char*> rows[] = {{0xFB00, "ff"},  {0xFB01, "fi"}, {0xFB02, "fl"}, {0xFB03, "ffi"},
                                                     {0xFB04, "ffl"}, {0x0132, "IJ"}, {0x0133, "ij"}};
    for (const auto& [unicode, letters] : rows) {
        Char ligature = MakeChar(unicode, 8, MakeAtts(10, 0, c_sans));
        ligature.glyphIndex = 77;
        ligature.isKerned = true;
        const Line exact = MakeLine({ligature, MakeChar(U'x', 5, ligature.atts)});
        exact->OnLineComplete();
        EXPECT_EQ(exact->chars.at(0).unicode, unicode);
        const Line line = MakeLine({ligature, MakeChar(U'x', 5, ligature.atts)});
        line->fidelity = TextFidelityEditable;
        line->OnLineComplete();
        EXPECT_EQ(line->GetText(), std::string(letters) + "x");
        const Char& first = line->chars[0];
        const Char& second = line->chars[1];
        EXPECT_NEAR(first.width / second.width,
                    first.GetFontWidthOf(first.unicode) / first.GetFontWidthOf(second.unicode), 1e-9);
        EXPECT_NEAR(line->GetWidth(line->chars.begin(), line->chars.end() - 1), 8, 1e-9);
        EXPECT_EQ(std::pair(first.charCode, second.charCode), std::pair(77, -1));
        EXPECT_FALSE(first.isKerned);
        EXPECT_TRUE((line->chars.end() - 2)->isKerned);
    }
}

TEST(TextLineSpacingTest, KnowsWhatIsMoreThanABlank)
{
    const auto isTab = [](const char* text, double wordSpace) {
        const Line line = ParseLine(text);
        line->SetWordSpace(wordSpace);
        return line->IsTabSpace(std::ranges::find(line->chars, true, &Char::isSpace));
    };
    for (const char* text : {"a6 _9.1 b6", "a6 _12 b6", ":6 _12 b6", ".6 _12.4 b6", ".6 _11.6 b6", "_12 b6"})
        EXPECT_TRUE(isTab(text, 1)) << text;
    for (const char* text : {"a6 _9 b6", ".6 _12 b6", "!6 _12 b6", "?6 _11.8 b6"})
        EXPECT_FALSE(isTab(text, 1)) << text;
    EXPECT_FALSE(isTab("a6 _12 b6", 1.4));
    EXPECT_TRUE(isTab("a6 _18 b6", 1.9));
}

TEST(TextLineSpacingTest, TypesTwoSpacesBehindASentence)
{
    const std::pair<const char*, const char*> rows[] = {
        {"a6 .6 _12 b6 !6 _12", "a6 .6 _6 _6 b6 !6 _6 _6"},
        {"?6 _12 :6 _12 b6", "?6 _6 _6 :6 _6 _6 b6"},
        {".6 _11.93 b6 ,6 _12 c6 .6 _6", ".6 _11.93 b6 ,6 _12 c6 .6 _6"},
        {".6", ".6"},
        {"", ""},
    };
    for (const auto& [before, after] : rows) {
        const Line line = ParseLine(before);
        line->SetDoubleSpaceAfterPunctuation();
        EXPECT_EQ(PrintLine(*line), after);
    }
}

TEST(TextLineSpacingTest, SaysHowItMayWrap)
{
    EXPECT_NEAR(ParseLine("a6 _3 >9 b6 _4 c6 _5")->GetLineWrapTolerance(0.5), 4.5, 1e-9);
    EXPECT_NEAR(ParseLine("a6 _3 b6 _4")->GetLineWrapTolerance(0.25), 1.75, 1e-9);
    EXPECT_EQ(ParseLine("_3 >3")->GetLineWrapTolerance(1), 0);

    const Line line = ParseLine("a6");
    EXPECT_TRUE(line->UsesWrap());
    for (const bool fromRight : {false, true}) {
        const auto atts = Story::ParagraphAtts::GetDefault()->Clone();
        const auto stops = Kernel::MakeCounted<Story::TabStops>();
        stops->Set({20, Story::Tab::Right, fromRight});
        atts->Set(Story::ParagraphAtt::Tabs, Kernel::Counted<const Story::TabStops>(stops));
        for (const bool isBack : {true, false}) {
            line->SetIsParagraphBack(isBack);
            line->SetNeedsLineBreak(!isBack);
            line->SetParagraphAtts(nullptr);
            EXPECT_FALSE(line->UsesWrap());
            line->SetParagraphAtts(atts);
            EXPECT_EQ(line->UsesWrap(), fromRight);
        }
    }
}

TEST(TextLineSpacingTest, MeasuresALineWithoutTheSpacesAtItsEnd)
{
    const Line line = ParseLine("a6 _6 b7 _6 _6");
    line->SetWordSpace(1.5);
    EXPECT_NEAR(line->GetStoryWidth(), 21, 1e-9);
    EXPECT_NEAR(line->GetStoryWidth(line->chars.begin() + 1), 9, 1e-9);
    EXPECT_NEAR(line->GetLetterSpace(line->chars.begin() + 2), -0.1, 1e-9);
    EXPECT_EQ(ParseLine("")->GetStoryWidth(), 0);
}

TEST(TextLineSpacingTest, StandsNumbersOfAnyKind)
{
    // Text without a size, without a width and of no width at all keeps its characters and gets no spacing but numbers.
    for (const double size : {0.0, -10.0, c_nan}) {
        for (const double width : {0.0, -5.0, c_nan, 1e308}) {
            const Atts atts = MakeAtts(size);
            const Line line = MakeLine({MakeChar(U'a', width, atts), MakeChar(U'b', 6, atts),
                                        MakeChar(U' ', width, atts), MakeChar(U'c', 6, atts)});
            line->OnLineComplete();
            EXPECT_GE(line->chars.size(), 3);
            for (const Char& c : line->chars)
                EXPECT_TRUE(std::isfinite(c.atts->Get(LetterSpacing))) << size << " " << width;
        }
    }
}

} // namespace
} // namespace Quillet::Test
