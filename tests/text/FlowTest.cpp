// Whole pages, from placed strings to stories.

#include "FlowOf.h"

#include <gtest/gtest.h>

namespace Quillet::Test {
namespace {

TEST(FlowTest, GathersLinesIntoColumns)
{
    const struct
    {
        const char* name;
        std::vector<Shown> strings;
        const char* columns;
    } rows[] = {
        {"pieces out of order", {{118, 700, "two"}, {100, 700, "one"}}, "[L onetwo]"},
        {"the same words twice, shifted", {{100, 700, "bold"}, {100.4, 700, "bold"}}, "[L bold][L bold]"},
        {"a third line at 2.5 heights",
         {{100, 700, "aa"}, {118, 688, "bb bb"}, {107, 663.1, "cc"}},
         "[L aa/bb bb | L cc]"},
        {"a third line farther down", {{100, 700, "aa"}, {118, 688, "bb bb"}, {107, 662, "cc"}}, "[L aa/bb bb][L cc]"},
        {"twice as far down, with a common edge",
         {{100, 700, "aaaa bbbb cccc"}, {100, 688, "dddd eeee"}, {136, 658, "fff"}},
         "[L aaaa bbbb cccc dddd eeee | L fff]"},
        {"a fourth line at 3 heights",
         {{100, 700, "aa"}, {118, 688, "bb bb"}, {107, 676, "cc"}, {111, 646, "dd"}},
         "[L aa/bb bb | L cc | L dd]"},
        {"far down, but where another line begins",
         {{100, 700, "aaaa bbbb cc"}, {112, 688, "dddd eeee"}, {100, 676, "ff"}, {112, 636, "gg"}},
         "[L aaaa bbbb cc dddd eeee | L ff | L gg]"},
        {"a column beside that begins lower",
         {{100, 700, "aaaa"}, {100, 688, "bbbb"}, {140, 676, "cccc"}, {140, 664, "dddd"}, {140, 652, "eeee"}},
         "[J aaaa bbbb][J cccc dddd eeee]"},
        {"a line beside, too far away", {{100, 700, "aa"}, {131, 700, "bb"}}, "[L aa][L bb]"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ReducedPage(MakeContent(row.strings)).Print(), row.columns) << row.name;
}

TEST(FlowTest, MakesParagraphsOfLines)
{
    const std::vector<Shown> block = {
        {100, 700, "one two three four"}, {100, 688, "five six seven eight"}, {100, 676, "nine"}};
    const struct
    {
        const char* name;
        std::vector<Shown> strings;
        const char* columns;
    } rows[] = {
        {"ragged", block, "[L one two three four five six seven eight nine]"},
        {"justified",
         {{100, 700, "aaaa bbbb cccc"}, {100, 688, "dddd eeee ffff"}, {100, 676, "gg"}},
         "[J aaaa bbbb cccc dddd eeee ffff gg]"},
        {"centred",
         {{106, 700, "aaaa bbbb cc"}, {100, 688, "dddd eeee ffff"}, {127, 676, "ggggg"}},
         "[C aaaa bbbb cc dddd eeee ffff ggggg]"},
        {"an indented first line begins a new one",
         {{100, 700, "aaaa bbbb cccc dddd"},
          {100, 688, "eeee ffff gggg"},
          {112, 676, "hhhh iiii jjjj kkk"},
          {100, 664, "llll mmmm"}},
         "[L aaaa bbbb cccc dddd eeee ffff gggg | L hhhh iiii jjjj kkk llll mmmm]"},
        // A short line between two others is the last of justified text.
        {"a short line",
         {{100, 700, "aaaa bbbb cccc dddd"}, {100, 688, "eeee"}, {100, 676, "ffff gggg hhhh iiii"}},
         "[J aaaa bbbb cccc dddd eeee | J ffff gggg hhhh iiii]"},
        {"a line a little shorter",
         {{100, 700, "aaaa bbbb cccc dddd"}, {100, 688, "eeee ffff gggg hhh"}, {100, 676, "iiii jjjj kkkk lll"}},
         "[J aaaa bbbb cccc dddd eeee ffff gggg hhh | J iiii jjjj kkkk lll]"},
        {"another size",
         {{100, 700, "Heading", 16}, {100, 680, "aaaa bbbb"}, {100, 668, "cccc dddd"}},
         "[L Heading | J aaaa bbbb cccc dddd]"},
        {"a heading of the same size",
         {{100, 700, "Heading"}, {100, 682, "aaaa bbbb"}, {100, 670, "cccc dddd"}},
         "[L Heading | J aaaa bbbb cccc dddd]"},
        {"a line that is nearer to the paragraph above than to the next line",
         {{100, 700, "Small", 8}, {100, 688, "aaaa bbbb"}, {100, 674, "cccc dddd"}},
         "[L Small | L aaaa bbbb | L cccc dddd]"},
        {"a title over the middle of the column",
         {{136, 700, "Title", 14}, {100, 676, "aaaa bbbb cccc dddd"}, {100, 664, "eeee"}},
         "[C Title | L aaaa bbbb cccc dddd eeee]"},
        {"text beside and below a drop cap",
         {{100, 676, "A", 36},
          {122, 700, "aaaa bbbb"},
          {122, 688, "cccc dddd"},
          {122, 676, "eeee ffff"},
          {100, 664, "gggg hhhh iii"}},
         "[J Aaaaa bbbb cccc dddd eeee ffff gggg hhhh iii]"},
        {"a wider gap",
         {{100, 700, "aaaa bbbb"}, {100, 688, "cccc dddd"}, {100, 664, "eeee ffff"}, {100, 652, "gggg hhhh"}},
         "[J aaaa bbbb cccc dddd | J eeee ffff gggg hhhh]"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ReducedPage(MakeContent(row.strings)).Print(), row.columns) << row.name;
    EXPECT_EQ(ReducedPage(MakeContent(block), TextFidelityExact).Print(),
              "[L one two three four | L five six seven eight | L nine]");
    EXPECT_EQ(ReducedPage(MakeContent(block), TextFidelityEditable, false).Print(),
              "[L one two three four][L five six seven eight][L nine]");
}

TEST(FlowTest, HeadersAndFootersAreColumnsOfTheirOwn)
{
    const auto above = [](const Shown& header) {
        return std::vector<Shown>{header, {100, 730, "aaaa bbbb"}, {100, 718, "cccc dddd"}, {100, 706, "eeee ffff"}};
    };
    const auto below = [](const Shown& footer) {
        return std::vector<Shown>{{100, 124, "aaaa bbbb"}, {100, 112, "cccc dddd"}, {100, 100, "eeee ffff"}, footer};
    };
    const std::string body = "J aaaa bbbb cccc dddd eeee ffff";
    const struct
    {
        const char* name;
        std::vector<Shown> strings;
        std::string columns;
    } rows[] = {
        {"one word", above({100, 760, "Head"}), "[L Head][" + body + "]"},
        {"reaching into the zone",
         {{100, 708, "Head"}, {100, 678, "aaaa bbbb"}, {100, 666, "cccc dddd"}, {100, 654, "eeee ffff"}},
         "[L Head][" + body + "]"},
        {"prose", above({100, 760, "He ad"}), "[L He ad | " + body + "]"},
        {"near", above({100, 747, "Head"}), "[L Head | " + body + "]"},
        {"as small as its neighbour is large",
         {{100, 770, "Head"}, {100, 740, "Title", 20}, {100, 715, "aaaa bbbb"}, {100, 703, "cccc dddd"}},
         "[L Head | L Title | L aaaa bbbb cccc dddd]"},
        {"a number", below({100, 70, "12"}), "[" + body + "][L 12]"},
        {"high above the end", below({100, 90, "12"}), "[" + body + " | J 12]"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ReducedPage(MakeContent(row.strings)).Print(), row.columns) << row.name;
}

TEST(FlowTest, ADropCapDoesNotMoveTheBaselineOfItsText)
{
    const std::string text =
        "BT /F 10 Tf 125 700 Td (ook at the lamp) Tj ET BT /F 10 Tf 125 688 Td (in the tower) Tj ET ";
    // The gap of 7 points is a space of the cap's size.
    const ReducedPage page("BT /F 30 Tf 100 688 Td (L) Tj ET " + text);
    ASSERT_EQ(page.columns.size(), 1);
    EXPECT_NEAR(page.columns[0]->lines.front()->position.y, -100, 1e-6);

    // Large numerals are drop caps as well, and not the numbers of a list.
    const ReducedPage numbered(MakeContent({{100, 688, "1", 30},
                                            {125, 700, "The lamp"},
                                            {125, 688, "is lit"},
                                            {100, 588, "2", 30},
                                            {125, 600, "The lamp"},
                                            {125, 588, "is lit"}}));
    EXPECT_EQ(numbered.Print(), "[J 1The lamp is lit | J 2The lamp is lit]");
}

TEST(FlowTest, LeavesRoomAtTheRightOfRaggedText)
{
    const ReducedPage page(MakeContent({{100, 700, "aaaa bbbb cccc dddd"},
                                        {100, 688, "eeee ffff gggg"},
                                        {100, 660, "hhhh iiii"},
                                        {100, 648, "jjjj"}}));
    const Story::Story story = page.GetStory(0);
    ASSERT_EQ(story.GetParagraphs().size(), 2);
    // 60 points are free, of which the text keeps one of its heights.
    EXPECT_NEAR(story.GetParagraphs()[1].atts->Get(Story::ParagraphAtt::RightIndent), 60 - 10, 1e-9);
}

/// What the markers of a list have of their own becomes a style by the kind of list.
TEST(FlowTest, NamesTheStylesOfMarkers)
{
    const ReducedPage page(MakeContent({{100, 700, "\\225 ", 14},
                                        {116.8, 700, "aa"},
                                        {100, 688, "\\225 ", 14},
                                        {116.8, 688, "bb"},
                                        {100, 676, "1. ", 12},
                                        {121.6, 676, "cc"},
                                        {100, 664, "2. ", 12},
                                        {121.6, 664, "dd"}}));
    std::string names;
    const Story::Story story = page.GetStory(0);
    for (const auto& paragraph : story.GetParagraphs())
        names += paragraph.atts->GetList()->styleName + "; ";
    EXPECT_EQ(names, "Bullet Character 1; Bullet Character 1; Numbered Character 2; Numbered Character 2; ");
}

} // namespace
} // namespace Quillet::Test
