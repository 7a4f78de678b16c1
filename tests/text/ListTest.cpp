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
    const std::u32string none[] = {
        U"",       {U"\0 a", 3},      U"\u2022 ", U"\u2022a b", U"\u2013 a", U"o ab",   U"1.1 ab",     U"1.",
        U"1",      U"((1) ab",        U"(",       U"( a",       U"a ab",     U"ab. ab", U"\u00e9. ab", U"\u0661. ab",
        U"iV. ab", U"iiiiiiiiii. ab", U"in. ab",  U"I ab"};
    for (const auto& text : none)
        EXPECT_TRUE(Parse(text).IsNone()) << PrintText(*SetText(text));
    for (const char32_t* text : {U"\u2022 a", U"\u2022\u00a0a", U"\u2022[30]a", U"\u25aa ab", U"* ab", U"\u0001 a"}) {
        std::string bullet;
        Kernel::CharTraits::AppendCodePoint(bullet, *text);
        EXPECT_EQ(PrintMarker(Parse(text)), "bullet " + bullet + " 2");
    }
    const std::pair<const char32_t*, const char*> numbers[] = {
        {U"1. ab", "1/0. 3"},
        {U"1 ab", "1/0 2"},
        {U"12) ab", "12/0) 4"},
        {U"007. ab", "7/0. 5"},
        {U"99999999999. a", "2147483647/0. 13"},
        {U"1. ", "1/0. 3"},
        {U"(1) ab", "(1/0) 4"},
        {U"<1> ab", "<1/0> 4"},
        {U"{1} ab", "{1/0} 4"},
        {U"a. ab", "1/4. 3"},
        {U"(b) ab", "(2/4) 4"},
        {U"Z) ab", "26/3) 3"},
        {U"i. ab", "1/2. 3"},
        {U"xiv) ab", "14/2) 5"},
        {U"MCM. ab", "1900/1. 5"},
        {U"c. ab", "100/2. 3"},
        {U"iiiiiiiii. ab", "9/2. 11"},
        {U"mild. ab", "1449/2. 6"},
    };
    for (const auto& [text, marker] : numbers)
        EXPECT_EQ(PrintMarker(Parse(text)), std::string("number ") + marker);
    Char bracket = SetText(U"[")->chars.front();
    Line line = SetText(U"7] ab");
    line->chars.insert(line->chars.begin(), bracket);
    EXPECT_EQ(PrintMarker(*line->GetListCandidate()), "number [7/0] 4");
}

TEST(ListTest, MarkersFollowEachOther)
{
    const auto follows = [](const char32_t* texts) {
        const auto lines = SetLines(texts);
        return lines[1]->GetListCandidate()->IsCompatible(*lines[0]->GetListCandidate());
    };
    for (const char32_t* texts :
         {U"1. a|2. a", U"\u2022 a|\u2022 b", U"i. a|ii. a", U"h. a|i. a", U"i. a|j. a", U"b. a|c. a"})
        EXPECT_TRUE(follows(texts)) << PrintLines(SetLines(texts));
    for (const char32_t* texts : {U"1. a|3. a", U"2. a|1. a", U"1. a|2) a", U"(1) a|2) a", U"1. a|\u2022 a",
                                  U"\u2022 a|\u25aa b", U"H. a|i. a", U"iv. a|V. a", U"2147483647. a|0. a"})
        EXPECT_FALSE(follows(texts)) << PrintLines(SetLines(texts));
}

TEST(ListTest, MarkersOfOtherLooksDoNotFollow)
{
    const auto parse = [](double size, double spacing) {
        const Line line = SetText(U"");
        AppendText(*line, U"\u2022", With(MakeAtts(size), Story::GlyphAtt::LetterSpacing, spacing));
        // The space behind the marker may be of either.
        AppendText(*line, U" text", MakeAtts());
        return ListAtt(line->chars.begin(), line->chars.end());
    };
    const ListAtt plain = parse(10, 0);
    const ListAtt large = parse(14, 0);
    ASSERT_TRUE(large.delta);
    EXPECT_EQ(large.delta->doubles, (std::map<Story::GlyphAtt::Double, double>{{Story::GlyphAtt::Size, 14}}));
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
Kernel::Counted<ColumnObject> MakeColumn(const std::u32string& texts, TextFidelity fidelity)
{
    auto column = Kernel::MakeCounted<ColumnObject>(-1);
    column->lines = SetLines(texts, 20);
    for (const Line& line : column->lines) {
        line->position.y = -50.0 * static_cast<double>(&line - column->lines.data());
        line->fidelity = fidelity;
        line->SetParent(column.Get());
    }
    return column;
}

TEST(ListTest, ChainsTheItemsOfAColumn)
{
    const std::pair<const char32_t*, std::string> rows[] = {
        {U"1. aa", "- "},
        {U"3.[12]aa", "- "},
        {U"1. aa|3. bb", "- - "},
        {U"1. aa|2. bb|3. cc", "1./0+ 1./0+ 1./0+ "},
        {U"h. aa|i. bb|j. cc", "8./4+ 1./4+ 1./4+ "},
        {U"i. aa|ii. bb|iii. cc", "1./2+ 1./2+ 1./2+ "},
        {U"i. aa|j. bb", "9./4+ 1./4+ "},
        {U"i. aa|j. bb|k. cc|l. dd", "9./4+ 1./4+ 1./4+ 1./4+ "},
        {U"(a) aa|(b) bb", "(1)/4+ (1)/4+ "},
        {U"1. aa|text|2. bb", "1./0! - 1./0 "},
        {U"1. aa|2. bb|1. cc|2. dd", "1./0+ 1./0+ 1./0!+ 1./0+ "},
        // Numbers that begin anew end the list, though a later one would go on with it.
        {U"1. aa|2. bb|1. cc|2. dd|3. ee", "1./0+ 1./0+ 1./0!+ 1./0+ 1./0+ "},
        // Behind bullets, numbers are not begun anew.
        {U"\u2022 aa|\u2022 bb|1. cc|2. dd", "\u2022/0 \u2022/0 1./0+ 1./0+ "},
        {U"1. aa|\u2022 bb|2. cc|\u2022 dd", "1./0! \u2022/0 1./0 \u2022/0 "},
        {U"1. aa|\u2022 bb|2. cc|* dd", "1./0! - 1./0 - "},
        // What turned out to be text does not end a list.
        {U"1. aa|2. bb|9. cc|3. dd|4. ee", "1./0! 1./0 - 1./0 1./0 "},
    };
    for (const auto& [texts, items] : rows) {
        const auto column = MakeColumn(texts, TextFidelityEditable);
        column->SetParagraphs();
        const auto plain = MakeColumn(texts, TextFidelityExact);
        plain->SetParagraphs();
        std::string found;
        for (const Line& line : column->lines) {
            const bool isItem = PrintItem(*line) != "-";
            EXPECT_EQ(line->listStyleCharCount, isItem ? line->GetListCandidate()->charCount : 0) << items;
            found += PrintItem(*line) + " ";
        }
        EXPECT_EQ(found, items);
        for (const Line& line : plain->lines)
            EXPECT_EQ(PrintItem(*line), "-") << items;
    }
}

/// The alignment of the marker, and where it and the text stand, if the second line is set off by `shift`.
std::string PlaceMarker(const char32_t* texts, double shift = 0)
{
    const auto column = MakeColumn(texts, TextFidelityEditable);
    column->lines[1]->position.x += shift;
    column->SetParagraphs();
    const Story::ParagraphAtts& atts = *column->lines[0]->paragraphAtts;
    const auto list = atts.GetList();
    if (list->type == Story::ListType::None) return "none";
    return "LCR"[list->align] + (" " + ToText(atts.Get(FirstLineIndent)) + " " + ToText(list->tabStopIndent));
}

TEST(ListTest, PlacesTheMarkerAndTheText)
{
    EXPECT_EQ(PlaceMarker(U"\u2022[18]aa|\u2022[18]bb"), "L 0 24");
    EXPECT_EQ(PlaceMarker(U"1.[18]aa|2.[18]bb"), "R 12 30");
    EXPECT_EQ(PlaceMarker(U"9.[18]aa|10.[12]bb"), "L 0 30");
    EXPECT_EQ(PlaceMarker(U"9.[18]aa|10.[18]bb", -6), "R 18 36");
    EXPECT_EQ(PlaceMarker(U"9.[18]aa|10.[18]bb", -3), "C 9 33");
    EXPECT_EQ(PlaceMarker(U"9.[18]aa|10.[18]bb", -4), "R 16 34");
}

} // namespace
} // namespace Quillet::Test
