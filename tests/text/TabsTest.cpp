#include "SetText.h"

#include <Quillet/Budget.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Quillet::Test {
namespace {

using namespace Story::ParagraphAtt;

/// Each with its place, "L" or "R" for its kind, "-" from the right and "." with dots.
std::string PrintStops(const Story::TabStops& stops)
{
    std::string text;
    for (const Story::TabStop& stop : stops) {
        text += (text.empty() ? "" : " ") + ToText(stop.position) + (stop.type == Story::Tab::Left ? "L" : "R") +
                (stop.fromRight ? "-" : "") + (stop.leader == Story::TabLeader::Dots ? "." : "");
    }
    return text;
}

TEST(TabsTest, FindsTheGapBeforeTheLastItem)
{
    const struct
    {
        const char32_t* text;
        int markerLength;
        bool dotsOnly;
        /// -1 for none.
        int found;
        bool hasLeader;
    } rows[] = {
        {U"", 0, false, -1, false},
        {U"ab cd", 0, false, -1, false},
        {U"ab[30]cd[30]ef", 0, false, 5, false},
        {U"ab[30]cd ef", 0, false, 2, false},
        {U"ab[30]cd", 0, true, -1, false},
        {U"ab[9]cd", 0, false, -1, false},
        {U"ab[9.1]cd", 0, false, 2, false},
        // Two spaces behind a sentence, and no sentence.
        {U"ab.[12]cd", 0, false, -1, false},
        {U"ab.[12.4]cd", 0, false, 3, false},
        {U"ab,[12]cd", 0, false, 3, false},
        {U"[12]cd", 0, false, 0, false},
        // Dots.
        {U"ab....9", 0, false, -1, false},
        {U"ab.....9", 0, false, 2, true},
        {U"ab..9", 0, true, -1, false},
        {U"ab...9", 0, true, 2, true},
        {U".....", 0, false, 0, true},
        {U"ab ..... 9.50", 0, false, 3, true},
        {U"ab.....[30]9", 0, false, 7, false},
        {U"ab.....[30]9", 0, true, -1, false},
        // The marker of a list has gaps of its own.
        {U"1.[30]ab", 3, false, -1, false},
        {U"1.....ab", 6, false, -1, false},
        {U"1.[30]ab[30]c", 3, false, 5, false},
        {U"ab", 99, false, -1, false},
    };
    for (const auto& row : rows) {
        const Line line = SetText(row.text);
        line->listStyleCharCount = row.markerLength;
        bool hasLeader = !row.hasLeader;
        const auto found = line->FindEndTab(hasLeader, row.dotsOnly);
        EXPECT_EQ(found == line->chars.end() ? -1 : found - line->chars.begin(), row.found)
            << PrintText(*line) << row.dotsOnly;
        EXPECT_EQ(hasLeader, row.hasLeader) << PrintText(*line);
    }
}

struct TabRow
{
    std::vector<std::u32string> before;
    std::vector<std::string> after;
    const char* stops;
    Story::AlignX::Type align = Story::AlignX::Left;
    bool isExact = false;
    double leftIndent = 0;
    int markerLength = 0;
};

TEST(TabsTest, MakesTabsOfGapsThatLineUp)
{
    const TabRow rows[] = {
        // A gap that lines up with another, however narrow, unless a third comes near.
        {{U"ab[12]c[60]x", U"de[12]fg[60]xy"}, {"ab<12>c<60>x", "de<12>fg<60>xy"}, "24L 90L 0R-"},
        {{U"ab[12]c[60]x", U"de[18]fg[60]xy"}, {"ab[12]c<60>x", "de[18]fg<60>xy"}, "90L 0R-"},
        {{U"ab[12]c[60]x", U"de[14]fg[60]xy", U"hi[12]j[60]x"},
         {"ab[12]c<60>x", "de[14]fg<60>xy", "hi[12]j<60>x"},
         "90L 0R-"},
        {{U"ab[12]c[60]x", U"de[18]fg[60]xy", U"hi[12]j[60]x"},
         {"ab<12>c<60>x", "de[18]fg<60>xy", "hi<12>j<60>x"},
         "24L 90L 0R-"},
        // Word spaces line up by chance.
        {{U"ab c", U"de fg"}, {"ab c", "de fg"}, ""},
        // A gap on its own has to be wide, or to be wanted as it is.
        {{U"ab[18]c[60]x"}, {"ab[18]c<60>x"}, "0R-"},
        {{U"ab[18.1]c[60]x"}, {"ab<18.1>c<60>x"}, "30L 0R-"},
        // The last one only has to be a gap.
        {{U"ab[9]c"}, {"ab[9]c"}, ""},
        {{U"ab[9.1]c"}, {"ab<9.1>c"}, "0R-"},
        {{U"ab[12]c de"}, {"ab<12>c de"}, "24L", Story::AlignX::Left, true},
        {{U"ab.[12]c de"}, {"ab.[12]c de"}, "", Story::AlignX::Left, true},
        {{U"ab[12.1]c de"}, {"ab<12.1>c de"}, "24.1L", Story::AlignX::Left, true},
        // Items that end together are set from the right.
        {{U"ab[30]1", U"ab[24]11"}, {"ab<30>1", "ab<24>11"}, "0R-"},
        {{U"ab[30]1", U"ab[24]11"}, {"ab<24><6>1", "ab<24>11"}, "36L 42L", Story::AlignX::Left, true},
        {{U"ab[30]11", U"ab[30]22"}, {"ab<30>11", "ab<30>22"}, "42L"},
        {{U"ab[30]1", U"ab cd efghijk"}, {"ab<30>1", "ab cd efghijk"}, "42L"},
        {{U"ab[29.5]1", U"ab cd ef"}, {"ab<29.5>1", "ab cd ef"}, "41.5L"},
        {{U"a[30]bcdefghijklmnopqrs"}, {"a<30>bcdefghijklmnopqrs"}, "36L"},
        // Dots go, however far they reach.
        {{U"ab.....9", U"abc....9"}, {"ab<30>9", "abc<24>9"}, "0R-."},
        {{U"ab ..... 9", U"cd"}, {"ab <30> 9", "cd"}, "0R-."},
        {{U"ab...."}, {"ab...."}, ""},
        // A gap without dots does not take them from the stop.
        {{U"ab.....9", U"abc[24]9"}, {"ab<30>9", "abc[24]9"}, "0R-."},
        // A gap over a column takes a tab for each.
        {{U"ab[30]cd[30]ef", U"gh[30]ij[30]kl", U"mn[72]op"},
         {"ab<30>cd<30>ef", "gh<30>ij<30>kl", "mn<30><42>op"},
         "42L 84L"},
        {{U"ab[30]cd[30]ef", U"gh[30]ij[30]kl", U"mnopqrs[42]op"},
         {"ab<30>cd<30>ef", "gh<30>ij<30>kl", "mnopqrs<42>op"},
         "42L 84L"},
        {{U"ab[15]cd[40]d", U"ab[16]c[45]d", U"ab"},
         {"ab[15]cd<40>d", "ab[16]c<45>d", "ab"},
         "79L",
         Story::AlignX::Justified},
        {{U"ab[60]c"}, {"ab[60]c"}, "", Story::AlignX::Centre},
        {{U"ab[60]c"}, {"ab[60]c"}, "", Story::AlignX::Right},
        // A hanging line has a stop where the others begin, which nobody has to set; the marker's gap is the list's.
        {{U"ab[12]c", U"de fg"}, {"ab<12>c", "de fg"}, "", Story::AlignX::Left, false, 24},
        // One tab goes to a place that is a stop twice, by rounding.
        {{U"ab[12.1]c", U"de fg"}, {"ab<12.1>c", "de fg"}, "24L", Story::AlignX::Left, false, 24.1},
        {{U"1.[30]ab[30]c"}, {"1.[30]ab<30>c"}, "0R-", Story::AlignX::Left, false, 0, 3},
    };
    for (const TabRow& row : rows) {
        std::vector<Line> lines;
        Object::Rect rect = Object::Rect::MakeEmpty();
        for (const std::u32string& text : row.before) {
            lines.push_back(SetText(text, 100));
            if (row.isExact) lines.back()->fidelity = TextFidelityExact;
            lines.back()->listStyleCharCount = row.markerLength;
            rect = rect.Union(lines.back()->GetGdiTextBox());
        }
        const auto paragraph = MakeParagraph(lines);
        // Hanging lines are behind the first.
        for (std::size_t i = 1; i < lines.size(); ++i)
            lines[i]->position.x += row.leftIndent;
        paragraph->atts->Set(Alignment, row.align);
        paragraph->atts->Set(LeftIndent, row.leftIndent);
        FrequencyMap map(0.1);
        paragraph->GetTabStops(map);
        paragraph->AdjustTabStops(rect, map);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            EXPECT_EQ(PrintText(*lines[i]), row.after[i]) << row.stops;
            EXPECT_NEAR(lines[i]->width, lines[i]->GetWidth(lines[i]->chars.begin(), lines[i]->chars.end()), 1e-9);
        }
        EXPECT_EQ(PrintStops(*paragraph->atts->GetTabStops()), row.stops) << row.after.front();
    }
}

TEST(TabsTest, CountsWhereGapsEnd)
{
    const struct
    {
        const char32_t* text;
        Story::AlignX::Type align;
        bool isBack;
        std::vector<double> places;
    } rows[] = {
        {U"ab[15]c d[15]e", Story::AlignX::Left, false, {100, 127, 160}},
        {U"ab.....9", Story::AlignX::Left, false, {100, 148}},
        {U"1.[15]a[15]b", Story::AlignX::Left, false, {100, 148}},
        // What stretches all spaces of a line alike is its alignment, but for the last line.
        {U"ab[15]c[15.5]d", Story::AlignX::Justified, false, {}},
        {U"ab[15]c[15.5]d", Story::AlignX::Justified, true, {100, 127, 148.5}},
        {U"ab[15]c[15.6]d", Story::AlignX::Justified, false, {100, 127, 148.6}},
        {U"ab.....9", Story::AlignX::Justified, false, {100, 148}},
    };
    for (const auto& row : rows) {
        const Line line = SetText(row.text, 100);
        if (row.text[0] == U'1') line->listStyleCharCount = 3;
        const auto atts = Story::ParagraphAtts::GetDefault()->Clone();
        atts->Set(Alignment, row.align);
        line->SetParagraphAtts(atts);
        line->SetIsParagraphBack(row.isBack);
        FrequencyMap map(0.1);
        line->GetTabStops(map);
        std::vector<double> places;
        for (const auto& bucket : map.buckets)
            places.push_back(bucket.sum);
        EXPECT_THAT(places, testing::Pointwise(testing::DoubleNear(1e-9), row.places)) << PrintText(*line);
    }
}

/// A blank with a glyph and no character stays what it is.
TEST(TabsTest, MakesNoTabOfAGlyph)
{
    const Line line = SetText(U"ab[30]cd");
    line->chars[2].unicode = 0;
    Story::TabStops stops;
    stops.Set({42, Story::Tab::Left, false});
    line->ApplyTabStops(stops, line->GetGdiTextBox());
    EXPECT_EQ(PrintText(*line), "ab[30]cd");
}

TEST(TabsTest, LooksForNoRightItemOnASlantedLine)
{
    const Line line = SetText(U"ab[30]1");
    line->SetTransform({1, 0.3, 0, 0, 1, 0});
    FrequencyMap map(0.1);
    line->GetTabStops(map);
    Story::TabStops stops;
    line->GetTabStops(stops, line->GetGdiTextBox(), map);
    EXPECT_EQ(PrintStops(stops), "42L");
    Story::TabStops none;
    line->GetTabStops(none, line->GetGdiTextBox(), FrequencyMap(0.1));
    EXPECT_TRUE(none.IsEmpty());
}

TEST(TabsTest, TypesSeveralSpacesForAGapAsWide)
{
    const struct
    {
        const char32_t* before;
        double wordSpace;
        int markerLength;
        const char* after;
    } rows[] = {
        {U"ab[18]cd e", 1, 0, "ab   cd e"},
        {U"ab[12.2]cd", 1, 0, "ab[6.1][6.1]cd"},
        {U"ab[12.4]cd", 1, 0, "ab[12.4]cd"},
        {U"ab[12]cd", 2, 0, "ab[12]cd"},
        {U"ab[24]cd[24]e", 2, 0, "ab[12][12]cd[12][12]e"},
        {U"ab[12]cd", 0, 0, "ab[12]cd"},
        {U"1.[12]cd", 1, 3, "1.[12]cd"},
        {U"ab[6000000000]cd", 1, 0, "ab[6000000000]cd"},
    };
    for (const auto& row : rows) {
        const Line line = SetText(row.before);
        line->wordSpace = row.wordSpace;
        line->listStyleCharCount = row.markerLength;
        line->AddMultipleSpaces();
        EXPECT_EQ(PrintText(*line), row.after);
    }
}

/// One line sets a thousand stops, which every gap of the others passes over.
TEST(TabsTest, PaysForTheTabsOfAGap)
{
    std::u32string steps;
    for (int i = 0; i < 1000; ++i)
        steps += U"a[30]";
    std::vector<Line> lines{SetText(steps + U"a")};
    for (int i = 0; i < 50; ++i)
        lines.push_back(SetText(U"a[35958]a"));
    const auto paragraph = MakeParagraph(lines);
    FrequencyMap map(0.1);
    paragraph->GetTabStops(map);
    const Object::Rect rect = lines.front()->GetGdiTextBox();
    {
        const Budget::Scope scope(Kernel::MakeCounted<Budget>(1'500'000), Budget::Share::All, nullptr);
        paragraph->AdjustTabStops(rect, map);
        EXPECT_TRUE(scope.WasCut());
    }
    EXPECT_EQ(lines[1]->chars.size(), 1001);
    EXPECT_EQ(lines.back()->chars.size(), 3);
    EXPECT_NEAR(lines[1]->GetWidth(lines[1]->chars.begin(), lines[1]->chars.end()), lines[1]->width, 1e-6);

    const Line gap = SetText(U"ab[60000]cd");
    const Budget::Scope scope(Kernel::MakeCounted<Budget>(1000), Budget::Share::All, nullptr);
    gap->AddMultipleSpaces();
    EXPECT_EQ(gap->chars.size(), 5);
}

} // namespace
} // namespace Quillet::Test
