#include "SetText.h"

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

/// What a drop cap with its quotes is, as they stand; "" for none.
std::string FindCap(const Line& line)
{
    const bool isDropCap = line->IsDropCap();
    line->fidelity = TextFidelityExact;
    EXPECT_FALSE(line->IsDropCap());
    line->chars.erase(line->GetDropCapEnd(), line->chars.cend());
    return isDropCap ? PrintText(*line) : "";
}

TEST(DropCapTest, KnowsALetterThatIsSeveralLinesHigh)
{
    EXPECT_EQ(FindCap(SetText(U"")), "");
    EXPECT_EQ(FindCap(SetCap(U"A", 30, 20, U" bc")), "A");
    EXPECT_EQ(FindCap(SetCap(U"A[2]", 30, 20, U"bc")), "A");
    EXPECT_EQ(FindCap(SetCap(U"\u201cA", 30, 20, U"bc")), "\u201cA");
    EXPECT_EQ(FindCap(SetCap(U"\u201c", 30, 20, U"bc")), "");
    EXPECT_EQ(FindCap(SetCap(U"AB", 30, 20, U"bc")), "");
    EXPECT_EQ(FindCap(SetCap(U"\u2026\u2014", 30, 20, U"bc")), "");
    EXPECT_EQ(FindCap(SetCap(U"A", 30, 20, U"")), "");
    EXPECT_EQ(FindCap(SetCap(U"A", 30, 20, U"  ")), "");
    EXPECT_EQ(FindCap(SetCap(U"A", 30, 0, U"bc")), "") << "on the baseline";
    EXPECT_EQ(FindCap(SetCap(U"A", 30, -20, U"bc")), "") << "above it";
    EXPECT_EQ(FindCap(SetCap(U"A", 20.1, 20, U"bc")), "A");
    EXPECT_EQ(FindCap(SetCap(U"A", 20, 20, U"bc")), "") << "not large enough";
    EXPECT_EQ(FindCap(SetCap(U"A", 30, 20, U"bc", 10, 9.9)), "A");
    EXPECT_EQ(FindCap(SetCap(U"A", 30, 20, U"bc", 10, 10)), "") << "the text not high enough";
    for (const auto& [size, shift] : {std::pair(30, 19), std::pair(24, 20)}) {
        const Line uneven = SetCap(U"\u201c", size, shift, U"");
        AppendText(*uneven, U"A", MakeAtts(30, 20));
        AppendText(*uneven, U"bc", MakeAtts());
        EXPECT_EQ(FindCap(uneven), "") << size;
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
    ASSERT_TRUE(dropCap && dropCap->isEnabled);
    EXPECT_EQ(dropCap->heightInLines, 2);
    // The second line begins 3 points behind the cap, and the spaces behind that are part of the distance.
    EXPECT_NEAR(dropCap->distanceToText, 3 + 5, 1e-9);
    EXPECT_EQ(PrintText(*cap), "\u201cHbc");
    EXPECT_NEAR(GetWidth(*cap), width, 1e-9);
    EXPECT_EQ(cap->textHeight, 12);
    for (const Char& c : cap->chars)
        EXPECT_TRUE(c.atts == cap->chars.back().atts);
    // Its size follows from the lines, and nothing else is special.
    EXPECT_FALSE(dropCap->delta);

    // Alone, the height tells the lines; the look lives on.
    const Line alone = SetCap(U"H", 60, 40, U"bc", 12);
    alone->chars[0].atts = With(alone->chars[0].atts, Shear, 0.25);
    const auto single = MakeParagraph({alone});
    single->dropCapLines = 1;
    single->SetDropCap();
    const auto other = single->atts->GetDropCap();
    EXPECT_EQ(single->dropCapLines, 3);
    EXPECT_EQ(other->heightInLines, 3);
    EXPECT_EQ(other->distanceToText, 0);
    ASSERT_TRUE(other->delta);
    EXPECT_EQ(other->delta->doubles, (std::map<Story::GlyphAtt::Double, double>{{Shear, 0.25}}));
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
