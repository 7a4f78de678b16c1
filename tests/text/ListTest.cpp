#include "SetText.h"

#include <gtest/gtest.h>

namespace Quillet::Test {
namespace {

using namespace Story::ParagraphAtt;

/// "-" for none; else the kind, what stands before the number, the number with its format, what stands behind it, and
/// how long all is.
std::string PrintMarker(const ListAtt& marker)
{
    if (marker.IsNone()) return "-";
    std::string text = marker.type == Story::ListType::Bullet ? "bullet " : "number ";
    if (marker.prefix != 0) Kernel::CharTraits::AppendCodePoint(text, marker.prefix);
    if (marker.type == Story::ListType::Number)
        text += ToText(marker.value) + '/' + ToText(static_cast<int>(marker.format));
    if (marker.suffix != 0) Kernel::CharTraits::AppendCodePoint(text, marker.suffix);
    return text + ' ' + ToText(marker.charCount);
}

ListAtt Parse(const std::u32string& text)
{
    const Line line = SetText(text);
    return {line->chars.begin(), line->chars.end()};
}

TEST(ListTest, ReadsTheMarkerOfALine)
{
    const struct
    {
        std::u32string text;
        const char* marker;
    } rows[] = {
        {U"", "-"},
        {U"\u2022 a", "bullet \u2022 2"},
        {U"\u2022\u00a0a", "bullet \u2022 2"},
        {U"\u2022[30]a", "bullet \u2022 2"},
        {U"\u25aa ab", "bullet \u25aa 2"},
        {U"* ab", "bullet * 2"},
        {U"\u0001 a", "bullet \u0001 2"},
        {std::u32string(U"\0 a", 3), "-"},
        {U"\u2022 ", "-"},
        {U"\u2022a b", "-"},
        {U"\u2013 a", "-"},
        {U"o ab", "-"},
        {U"1. ab", "number 1/0. 3"},
        {U"1 ab", "number 1/0 2"},
        {U"12) ab", "number 12/0) 4"},
        {U"007. ab", "number 7/0. 5"},
        {U"99999999999. a", "number 2147483647/0. 13"},
        {U"1.1 ab", "-"},
        {U"1.", "-"},
        {U"1. ", "number 1/0. 3"},
        {U"1", "-"},
        {U"(1) ab", "number (1/0) 4"},
        {U"<1> ab", "number <1/0> 4"},
        {U"{1} ab", "number {1/0} 4"},
        {U"((1) ab", "-"},
        {U"(", "-"},
        {U"( a", "-"},
        {U"a ab", "-"},
        {U"a. ab", "number 1/4. 3"},
        {U"(b) ab", "number (2/4) 4"},
        {U"Z) ab", "number 26/3) 3"},
        {U"ab. ab", "-"},
        {U"\u00e9. ab", "-"},
        {U"\u0661. ab", "-"},
        {U"i. ab", "number 1/2. 3"},
        {U"xiv) ab", "number 14/2) 5"},
        {U"MCM. ab", "number 1900/1. 5"},
        {U"c. ab", "number 100/2. 3"},
        {U"iV. ab", "-"},
        {U"iiiiiiiii. ab", "number 9/2. 11"},
        {U"iiiiiiiiii. ab", "-"},
        {U"mild. ab", "number 1449/2. 6"},
        {U"in. ab", "-"},
        {U"I ab", "-"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(PrintMarker(Parse(row.text)), row.marker) << PrintText(*SetText(row.text));
    Char bracket = SetText(U"[")->chars.front();
    Line line = SetText(U"7] ab");
    line->chars.insert(line->chars.begin(), bracket);
    EXPECT_EQ(PrintMarker(*line->GetListCandidate()), "number [7/0] 4");
}

TEST(ListTest, MarkersFollowEachOther)
{
    const struct
    {
        const char32_t* first;
        const char32_t* second;
        bool follows;
    } rows[] = {
        {U"1. a", U"2. a", true},         {U"1. a", U"3. a", false},         {U"2. a", U"1. a", false},
        {U"1. a", U"2) a", false},        {U"(1) a", U"2) a", false},        {U"1. a", U"\u2022 a", false},
        {U"\u2022 a", U"\u2022 b", true}, {U"\u2022 a", U"\u25aa b", false}, {U"i. a", U"ii. a", true},
        {U"h. a", U"i. a", true},         {U"i. a", U"j. a", true},          {U"b. a", U"c. a", true},
        {U"H. a", U"i. a", false},        {U"iv. a", U"V. a", false},        {U"2147483647. a", U"0. a", false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Parse(row.second).IsCompatible(Parse(row.first)), row.follows) << PrintText(*SetText(row.second));
}

TEST(ListTest, MarkersOfOtherLooksDoNotFollow)
{
    const auto parse = [](double size, double spacing) {
        const Line line = SetText(U"");
        const auto atts = MakeAtts(size)->Clone();
        atts->Set(Story::GlyphAtt::LetterSpacing, spacing);
        AppendText(*line, U"\u2022", Kernel::ConsolidateObjectSacrifice(atts));
        // The space behind the marker may be of either.
        AppendText(*line, U" text", MakeAtts());
        return ListAtt(line->chars.begin(), line->chars.end());
    };
    const ListAtt plain = parse(10, 0);
    const ListAtt large = parse(14, 0);
    EXPECT_FALSE(plain.delta);
    ASSERT_TRUE(large.delta);
    EXPECT_EQ(large.delta->doubles, (std::map<Story::GlyphAtt::Double, double>{{Story::GlyphAtt::Size, 14}}));
    EXPECT_TRUE(parse(14, 0).IsCompatible(large));
    EXPECT_FALSE(plain.IsCompatible(large) || large.IsCompatible(plain) || parse(15, 0).IsCompatible(large));
    // What a line did to its letters is no look.
    EXPECT_FALSE(parse(10, 0.2).delta);
    EXPECT_TRUE(parse(14, 0.2).IsCompatible(large));
}

/// "-" for none; else the marker with the number that the list starts with, its format, "!" where it starts anew and
/// "+" for one without other text between.
std::string PrintItem(const TextLineObject& line)
{
    const auto list = line.paragraphAtts->GetList();
    if (list->type == Story::ListType::None) return "-";
    std::string text = list->text.GetText(ToText(list->start));
    text.back() = '/';
    return text + ToText(static_cast<int>(list->format)) + (list->isRestart ? "!" : "") +
           (list->restartType == Story::RestartNumberingType::Both ? "+" : "");
}

/// Lines too far apart to be of one paragraph.
Kernel::Counted<ColumnObject> MakeColumn(const std::vector<std::u32string>& texts, TextFidelity fidelity)
{
    auto column = Kernel::MakeCounted<ColumnObject>(-1);
    for (const std::u32string& text : texts) {
        const Line line = SetText(text, 20, -50.0 * static_cast<double>(column->lines.size()));
        line->fidelity = fidelity;
        line->SetParent(column.Get());
        column->lines.push_back(line);
    }
    return column;
}

TEST(ListTest, ChainsTheItemsOfAColumn)
{
    const struct
    {
        std::vector<std::u32string> texts;
        std::vector<std::string> items;
    } rows[] = {
        {{U"1. aa"}, {"-"}},
        {{U"3.[12]aa"}, {"-"}},
        {{U"1. aa", U"3. bb"}, {"-", "-"}},
        {{U"1. aa", U"2. bb", U"3. cc"}, {"1./0+", "1./0+", "1./0+"}},
        {{U"h. aa", U"i. bb", U"j. cc"}, {"8./4+", "1./4+", "1./4+"}},
        {{U"i. aa", U"ii. bb", U"iii. cc"}, {"1./2+", "1./2+", "1./2+"}},
        {{U"i. aa", U"j. bb"}, {"9./4+", "1./4+"}},
        {{U"i. aa", U"j. bb", U"k. cc", U"l. dd"}, {"9./4+", "1./4+", "1./4+", "1./4+"}},
        {{U"(a) aa", U"(b) bb"}, {"(1)/4+", "(1)/4+"}},
        {{U"1. aa", U"text", U"2. bb"}, {"1./0!", "-", "1./0"}},
        {{U"1. aa", U"2. bb", U"1. cc", U"2. dd"}, {"1./0+", "1./0+", "1./0!+", "1./0+"}},
        // Numbers that begin anew end the list, though a later one would go on with it.
        {{U"1. aa", U"2. bb", U"1. cc", U"2. dd", U"3. ee"}, {"1./0+", "1./0+", "1./0!+", "1./0+", "1./0+"}},
        // Behind bullets, numbers are not begun anew.
        {{U"\u2022 aa", U"\u2022 bb", U"1. cc", U"2. dd"}, {"\u2022/0", "\u2022/0", "1./0+", "1./0+"}},
        {{U"1. aa", U"\u2022 bb", U"2. cc", U"\u2022 dd"}, {"1./0!", "\u2022/0", "1./0", "\u2022/0"}},
        {{U"1. aa", U"\u2022 bb", U"2. cc", U"* dd"}, {"1./0!", "-", "1./0", "-"}},
        // What turned out to be text does not end a list.
        {{U"1. aa", U"2. bb", U"9. cc", U"3. dd", U"4. ee"}, {"1./0!", "1./0", "-", "1./0", "1./0"}},
    };
    for (const auto& row : rows) {
        const auto column = MakeColumn(row.texts, TextFidelityEditable);
        column->SetParagraphs();
        const auto plain = MakeColumn(row.texts, TextFidelityExact);
        plain->SetParagraphs();
        for (std::size_t i = 0; i < row.texts.size(); ++i) {
            EXPECT_EQ(PrintItem(*column->lines[i]), row.items[i]) << i << " of " << PrintText(*column->lines[0]);
            const int count = row.items[i] == "-" ? 0 : column->lines[i]->GetListCandidate()->charCount;
            EXPECT_EQ(column->lines[i]->listStyleCharCount, count);
            EXPECT_EQ(PrintItem(*plain->lines[i]), "-");
        }
    }
}

TEST(ListTest, PlacesTheMarkerAndTheText)
{
    const struct
    {
        std::vector<std::u32string> texts;
        double shift;
        Story::AlignX::Type align;
        double place;
        double tab;
    } rows[] = {
        {{U"\u2022[18]aa", U"\u2022[18]bb"}, 0, Story::AlignX::Left, 0, 24},
        {{U"1.[18]aa", U"2.[18]bb"}, 0, Story::AlignX::Right, 12, 30},
        {{U"9.[18]aa", U"10.[12]bb"}, 0, Story::AlignX::Left, 0, 30},
        {{U"9.[18]aa", U"10.[18]bb"}, -6, Story::AlignX::Right, 18, 36},
        {{U"9.[18]aa", U"10.[18]bb"}, -3, Story::AlignX::Centre, 9, 33},
        {{U"9.[18]aa", U"10.[18]bb"}, -4, Story::AlignX::Right, 16, 34},
    };
    for (const auto& row : rows) {
        const auto column = MakeColumn(row.texts, TextFidelityEditable);
        column->lines[1]->position.x += row.shift;
        column->SetParagraphs();
        const Story::ParagraphAtts& atts = *column->lines[0]->paragraphAtts;
        ASSERT_NE(atts.GetList()->type, Story::ListType::None) << row.shift;
        EXPECT_EQ(atts.GetList()->align, row.align) << row.shift;
        EXPECT_NEAR(atts.Get(FirstLineIndent), row.place, 1e-9) << row.shift;
        EXPECT_NEAR(atts.GetList()->tabStopIndent, row.tab, 1e-9) << row.shift;
    }
}

} // namespace
} // namespace Quillet::Test
