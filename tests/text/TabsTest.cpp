#include "SetText.h"

#include <Quillet/Budget.h>

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

/// The character where the gap before the last item begins, with "." behind it for dots.
std::string FindEndTab(const std::u32string& text, bool dotsOnly = false, int markerLength = 0)
{
    const Line line = SetText(text);
    line->listStyleCharCount = markerLength;
    bool hasLeader = false;
    const auto found = line->FindEndTab(hasLeader, dotsOnly);
    return (found == line->chars.end() ? "none" : std::to_string(found - line->chars.begin())) + (hasLeader ? "." : "");
}

TEST(TabsTest, FindsTheGapBeforeTheLastItem)
{
    EXPECT_EQ(FindEndTab(U"ab cd"), "none");
    EXPECT_EQ(FindEndTab(U"ab[30]cd ef"), "2");
    EXPECT_EQ(FindEndTab(U"ab[30]cd", true), "none");
    EXPECT_EQ(FindEndTab(U"[12]cd"), "0");
    EXPECT_EQ(FindEndTab(U"ab....9"), "none");
    EXPECT_EQ(FindEndTab(U"ab.....9"), "2.");
    EXPECT_EQ(FindEndTab(U"ab..9", true), "none");
    EXPECT_EQ(FindEndTab(U"ab...9", true), "2.");
    EXPECT_EQ(FindEndTab(U"....."), "0.");
    EXPECT_EQ(FindEndTab(U"ab ..... 9.50"), "3.");
    EXPECT_EQ(FindEndTab(U"ab.....[30]9", true), "none");
    // The marker of a list has gaps of its own.
    EXPECT_EQ(FindEndTab(U"1.....ab", false, 6), "none");
    EXPECT_EQ(FindEndTab(U"1.[30]ab[30]c", false, 3), "5");
    EXPECT_EQ(FindEndTab(U"ab", false, 99), "none");
}

TEST(TabsTest, MakesTabsOfGapsThatLineUp)
{
    using namespace Story::AlignX;
    struct Row
    {
        const char32_t* before;
        const char *after, *stops;
        Type align = Left;
        bool isExact = false;
        double leftIndent = 0;
        int markerLength = 0;
    };
    const Row rows[] = {
        // A gap that lines up with another, however narrow, unless a third comes near.
        {U"ab[12]c[60]x|de[12]fg[60]xy", "ab<12>c<60>x|de<12>fg<60>xy", "24L 90L 0R-"},
        {U"ab[12]c[60]x|de[18]fg[60]xy", "ab[12]c<60>x|de[18]fg<60>xy", "90L 0R-"},
        {U"ab[12]c[60]x|de[14]fg[60]xy|hi[12]j[60]x", "ab[12]c<60>x|de[14]fg<60>xy|hi[12]j<60>x", "90L 0R-"},
        {U"ab[12]c[60]x|de[18]fg[60]xy|hi[12]j[60]x", "ab<12>c<60>x|de[18]fg<60>xy|hi<12>j<60>x", "24L 90L 0R-"},
        // Word spaces line up by chance.
        {U"ab c|de fg", "ab c|de fg", ""},
        // A gap on its own has to be wide, or to be wanted as it is.
        {U"ab[18]c[60]x", "ab[18]c<60>x", "0R-"},
        {U"ab[18.1]c[60]x", "ab<18.1>c<60>x", "30L 0R-"},
        // The last one only has to be a gap.
        {U"ab[9]c", "ab[9]c", ""},
        {U"ab[9.1]c", "ab<9.1>c", "0R-"},
        {U"ab[12]c de", "ab<12>c de", "24L", Left, true},
        {U"ab.[12]c de", "ab.[12]c de", "", Left, true},
        {U"ab[12.1]c de", "ab<12.1>c de", "24.1L", Left, true},
        // Items that end together are set from the right.
        {U"ab[30]1|ab[24]11", "ab<30>1|ab<24>11", "0R-"},
        {U"ab[30]1|ab[24]11", "ab<24><6>1|ab<24>11", "36L 42L", Left, true},
        {U"ab[30]11|ab[30]22", "ab<30>11|ab<30>22", "42L"},
        {U"ab[30]1|ab cd efghijk", "ab<30>1|ab cd efghijk", "42L"},
        {U"ab[29.5]1|ab cd ef", "ab<29.5>1|ab cd ef", "41.5L"},
        {U"a[30]bcdefghijklmnopqrs", "a<30>bcdefghijklmnopqrs", "36L"},
        // Dots go, however far they reach.
        {U"ab.....9|abc....9", "ab<30>9|abc<24>9", "0R-."},
        {U"ab ..... 9|cd", "ab <30> 9|cd", "0R-."},
        {U"ab....", "ab....", ""},
        // A gap without dots does not take them from the stop.
        {U"ab.....9|abc[24]9", "ab<30>9|abc[24]9", "0R-."},
        // A gap over a column takes a tab for each.
        {U"ab[30]cd[30]ef|gh[30]ij[30]kl|mn[72]op", "ab<30>cd<30>ef|gh<30>ij<30>kl|mn<30><42>op", "42L 84L"},
        {U"ab[30]cd[30]ef|gh[30]ij[30]kl|mnopqrs[42]op", "ab<30>cd<30>ef|gh<30>ij<30>kl|mnopqrs<42>op", "42L 84L"},
        {U"ab[15]cd[40]d|ab[16]c[45]d|ab", "ab[15]cd<40>d|ab[16]c<45>d|ab", "79L", Justified},
        {U"ab[60]c", "ab[60]c", "", Centre},
        {U"ab[60]c", "ab[60]c", "", Right},
        // A hanging line has a stop where the others begin, which nobody has to set; the marker's gap is the list's.
        {U"ab[12]c|de fg", "ab<12>c|de fg", "", Left, false, 24},
        // One tab goes to a place that is a stop twice, by rounding.
        {U"ab[12.1]c|de fg", "ab<12.1>c|de fg", "24L", Left, false, 24.1},
        {U"1.[30]ab[30]c", "1.[30]ab<30>c", "0R-", Left, false, 0, 3},
    };
    for (const Row& row : rows) {
        const auto lines = SetLines(row.before, 100);
        Object::Rect rect = Object::Rect::MakeEmpty();
        for (const Line& line : lines) {
            if (row.isExact) line->fidelity = TextFidelityExact;
            line->listStyleCharCount = row.markerLength;
            rect = rect.Union(line->GetGdiTextBox());
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
        EXPECT_EQ(PrintLines(lines), row.after);
        for (const Line& line : lines)
            EXPECT_NEAR(line->width, GetWidth(*line), 1e-9) << row.after;
        EXPECT_EQ(PrintStops(*paragraph->atts->GetTabStops()), row.stops) << row.after;
    }
}

std::string PrintGapEnds(const std::u32string& text, Story::AlignX::Type align = Story::AlignX::Left,
                         bool isBack = false)
{
    const Line line = SetText(text, 100);
    if (text[0] == U'1') line->listStyleCharCount = 3;
    const auto atts = Story::ParagraphAtts::GetDefault()->Clone();
    atts->Set(Alignment, align);
    line->SetParagraphAtts(atts);
    line->SetIsParagraphBack(isBack);
    FrequencyMap map(0.1);
    line->GetTabStops(map);
    std::string places;
    for (const auto& bucket : map.buckets)
        places += ToText(bucket.sum) + ' ';
    return places;
}

TEST(TabsTest, CountsWhereGapsEnd)
{
    EXPECT_EQ(PrintGapEnds(U"ab[15]c d[15]e"), "100 127 160 ");
    EXPECT_EQ(PrintGapEnds(U"ab.....9"), "100 148 ");
    EXPECT_EQ(PrintGapEnds(U"1.[15]a[15]b"), "100 148 ");
    // What stretches all spaces of a line alike is its alignment, but for the last line.
    EXPECT_EQ(PrintGapEnds(U"ab[15]c[15.5]d", Story::AlignX::Justified), "");
    EXPECT_EQ(PrintGapEnds(U"ab[15]c[15.5]d", Story::AlignX::Justified, true), "100 127 148.5 ");
    EXPECT_EQ(PrintGapEnds(U"ab[15]c[15.6]d", Story::AlignX::Justified), "100 127 148.6 ");
    EXPECT_EQ(PrintGapEnds(U"ab.....9", Story::AlignX::Justified), "100 148 ");
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
    // A blank with a glyph and no character stays what it is.
    line->SetTransform({});
    line->chars[2].unicode = 0;
    line->ApplyTabStops(stops, line->GetGdiTextBox());
    EXPECT_EQ(PrintText(*line), "ab[30]1");
}

TEST(TabsTest, TypesSeveralSpacesForAGapAsWide)
{
    const auto type = [](const char32_t* text, double wordSpace = 1, int markerLength = 0) {
        const Line line = SetText(text);
        line->wordSpace = wordSpace;
        line->listStyleCharCount = markerLength;
        line->AddMultipleSpaces();
        return PrintText(*line);
    };
    EXPECT_EQ(type(U"ab[18]cd e"), "ab   cd e");
    EXPECT_EQ(type(U"ab[12.2]cd"), "ab[6.1][6.1]cd");
    EXPECT_EQ(type(U"ab[12.4]cd"), "ab[12.4]cd");
    EXPECT_EQ(type(U"ab[12]cd", 2), "ab[12]cd");
    EXPECT_EQ(type(U"ab[24]cd[24]e", 2), "ab[12][12]cd[12][12]e");
    EXPECT_EQ(type(U"ab[12]cd", 0), "ab[12]cd");
    EXPECT_EQ(type(U"1.[12]cd", 1, 3), "1.[12]cd");
    EXPECT_EQ(type(U"ab[6000000000]cd"), "ab[6000000000]cd");
}

/// One line sets a thousand stops, which every gap of the others passes over.
TEST(TabsTest, PaysForTheTabsOfAGap)
{
    std::u32string texts;
    for (int i = 0; i < 1000; ++i)
        texts += U"a[30]";
    texts += U"a";
    for (int i = 0; i < 50; ++i)
        texts += U"|a[35958]a";
    const auto lines = SetLines(texts);
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
    EXPECT_NEAR(GetWidth(*lines[1]), lines[1]->width, 1e-6);

    const Line gap = SetText(U"ab[60000]cd");
    const Budget::Scope scope(Kernel::MakeCounted<Budget>(1000), Budget::Share::All, nullptr);
    gap->AddMultipleSpaces();
    EXPECT_EQ(gap->chars.size(), 5);
}

} // namespace
} // namespace Quillet::Test
