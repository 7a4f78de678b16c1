#include "SetText.h"
#include "text/ForAtts.h"

#include <Story/DropCapAtt.h>

#include <gtest/gtest.h>

namespace Quillet::Test {
namespace {

using namespace Story::GlyphAtt;

Line SetCap(const std::u32string& cap, double size, double shift, const std::u32string& text, double textSize = 10,
            double textShift = 0)
{
    Line line = SetText(U"");
    AppendText(*line, cap, MakeAtts(size, shift));
    AppendText(*line, text, MakeAtts(textSize, textShift));
    return line;
}

TEST(DropCapTest, KnowsALetterThatIsSeveralLinesHigh)
{
    const struct
    {
        Line line;
        bool isDropCap;
        std::ptrdiff_t end;
        const char* why;
    } rows[] = {
        {SetText(U""), false, 0, "empty"},
        {SetCap(U"A", 30, 20, U"bc"), true, 1, "a letter"},
        {SetCap(U"A", 30, 20, U" bc"), true, 1, "a space of the text"},
        {SetCap(U"A[2]", 30, 20, U"bc"), true, 1, "a space of the cap"},
        {SetCap(U"\u201cA", 30, 20, U"bc"), true, 2, "a quote"},
        {SetCap(U"\u201c", 30, 20, U"bc"), false, 2, "a quote alone"},
        {SetCap(U"AB", 30, 20, U"bc"), false, 1, "two letters"},
        {SetCap(U"A", 30, 20, U""), false, 1, "no text"},
        {SetCap(U"A", 30, 20, U"  "), false, 1, "blanks"},
        {SetCap(U"A", 30, 0, U"bc"), false, 1, "on the baseline"},
        {SetCap(U"A", 30, -20, U"bc"), false, 1, "above it"},
        {SetCap(U"A", 20.1, 20, U"bc"), true, 1, "just large enough"},
        {SetCap(U"A", 20, 20, U"bc"), false, 1, "not large enough"},
        {SetCap(U"A", 30, 20, U"bc", 10, 9.9), true, 1, "text just high enough"},
        {SetCap(U"A", 30, 20, U"bc", 10, 10), false, 1, "text not high enough"},
        {SetCap(U"\u2026\u2014", 30, 20, U"bc"), false, 3, "no letter"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.line->IsDropCap(), row.isDropCap) << row.why;
        EXPECT_EQ(row.line->GetDropCapEnd() - row.line->chars.begin(), row.end) << row.why;
        row.line->fidelity = TextFidelityExact;
        EXPECT_FALSE(row.line->IsDropCap()) << row.why;
    }
    for (const auto& [size, shift] : {std::pair(30, 19), std::pair(24, 20)}) {
        const Line uneven = SetCap(U"\u201c", size, shift, U"");
        AppendText(*uneven, U"A", MakeAtts(30, 20));
        AppendText(*uneven, U"bc", MakeAtts());
        EXPECT_FALSE(uneven->IsDropCap()) << size;
    }
}

TEST(DropCapTest, MeasuresTheCap)
{
    const Line line = SetCap(U"H", 60, 40, U" bc", 12);
    line->position.x = 100;
    EXPECT_EQ(line->GetDropCapLeading(), 12);
    EXPECT_NEAR(line->GetDropCapLeft(), 136, 1e-9);
    // Room behind the letter is no part of it; a letter that was pushed together is as wide as it is.
    line->chars[0].width = 40;
    EXPECT_NEAR(line->GetDropCapLeft(), 136, 1e-9);
    line->chars[0].width = 30;
    EXPECT_NEAR(line->GetDropCapLeft(), 130, 1e-9);
    const double height = line->chars[0].GetGlyphMetrics().box.GetHeight() * 60;
    ASSERT_GT(height, 30);
    ASSERT_LT(height, 37);
    EXPECT_EQ(line->GetDropCapLineCount(), 3);
    // A tenth of a line more than two is still two.
    EXPECT_EQ(SetCap(U"H", 60, 40, U"bc", height / 2.09)->GetDropCapLineCount(), 2);
    EXPECT_EQ(SetCap(U"H", 60, 40, U"bc", height / 2.11)->GetDropCapLineCount(), 3);
    EXPECT_EQ(SetCap(U"H", 60, 40, U"")->GetDropCapLineCount(), 1000);
    EXPECT_EQ(SetText(U"")->GetDropCapLineCount(), 1);
}

TEST(DropCapTest, BecomesAnAttributeOfTheParagraph)
{
    const Line cap = SetCap(U"\u201cH", 60, 40, U"[3][2]bc", 12);
    const double width = cap->width;
    const Line beside = SetText(U"de", 75);
    const Line below = SetText(U"fg");
    const auto paragraph = MakeParagraph({cap, beside, below});
    paragraph->dropCapLines = 2;
    paragraph->SetDropCap();
    const auto dropCap = paragraph->atts->GetDropCap();
    ASSERT_TRUE(dropCap);
    EXPECT_TRUE(dropCap->isEnabled);
    EXPECT_EQ(dropCap->heightInLines, 2);
    // The second line begins 3 points behind the cap, and the spaces behind that are part of the distance.
    EXPECT_NEAR(dropCap->distanceToText, 3 + 5, 1e-9);
    EXPECT_EQ(PrintText(*cap), "\u201cHbc");
    EXPECT_NEAR(cap->GetWidth(cap->chars.begin(), cap->chars.end()), width, 1e-9);
    EXPECT_EQ(cap->textHeight, 12);
    for (const Char& c : cap->chars)
        EXPECT_TRUE(c.atts == cap->chars.back().atts);
    // Its size follows from the lines, and nothing else is special.
    EXPECT_FALSE(dropCap->delta);

    // Alone, the height tells the lines; the look lives on.
    const Line alone = SetCap(U"H", 60, 40, U"bc", 12);
    ForAtts(alone->chars.begin(), alone->chars.begin() + 1, [](Story::GlyphAtts& atts) { atts.Set(Shear, 0.25); });
    const auto single = MakeParagraph({alone});
    single->dropCapLines = 1;
    single->SetDropCap();
    EXPECT_EQ(single->dropCapLines, 3);
    EXPECT_EQ(single->atts->GetDropCap()->heightInLines, 3);
    EXPECT_EQ(single->atts->GetDropCap()->distanceToText, 0);
    ASSERT_TRUE(single->atts->GetDropCap()->delta);
    EXPECT_EQ(single->atts->GetDropCap()->delta->doubles, (std::map<Story::GlyphAtt::Double, double>{{Shear, 0.25}}));
    EXPECT_TRUE(alone->chars.front().atts == alone->chars.back().atts);

    // A cap without text keeps its size.
    const Line bare = SetCap(U"H", 60, 40, U"  ");
    EXPECT_FALSE(bare->RemoveDropCap(1, 2)->delta);
    EXPECT_EQ(PrintText(*bare), "H");
    EXPECT_EQ(bare->textHeight, 60);
    EXPECT_EQ(bare->chars.front().atts->Get(BaselineShift), 0);
    EXPECT_TRUE(SetText(U"")->RemoveDropCap(1, 2)->isEnabled);
}

} // namespace
} // namespace Quillet::Test
