// Whole pages, from placed strings to stories.

#include "TextOf.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <Quillet/ColumnObject.h>

#include <Kernel/CharTraits.h>
#include <Story/Story.h>

#include <gtest/gtest.h>

#include <iterator>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

namespace Quillet::Test {
namespace {

/// Strings with "|" between them, in a font in which every character is 6 points wide at 10 points. Each has its x, its
/// y upward, if that is not 12 points below the one before, and its size, if that is another; then ":" and its text.
std::string MakeContent(const std::string& strings)
{
    std::string content;
    double y = 712;
    std::istringstream all(strings);
    for (std::string shown; std::getline(all, shown, '|');) {
        const auto colon = shown.find(':');
        std::istringstream start(shown.substr(0, colon));
        const std::vector<double> numbers{std::istream_iterator<double>(start), {}};
        y = numbers.size() > 1 ? numbers[1] : y - 12;
        content += "BT /F " + ToText(numbers.size() > 2 ? numbers[2] : 10) + " Tf " + ToText(numbers[0]) + ' ' +
                   ToText(y) + " Td (" + shown.substr(colon + 1) + ") Tj ET\n";
    }
    return content;
}

/// A page of 600 by 800 points, reduced.
struct ReducedPage
{
    explicit ReducedPage(const std::string& strings, TextFidelity fidelity = TextFidelityEditable,
                         bool isGrouped = true)
        : document(MakePagePdf(
              MakeContent(strings),
              {"/Font << /F << /Type /Font /Subtype /Type1 /BaseFont /Courier /Encoding /WinAnsiEncoding >> >>",
               "/MediaBox [0 0 600 800]"}))
    {
        document->SetTextFidelity(fidelity);
        document->SetIsGroupTextLines(isGrouped);
        root = document.Build();
        root->Reduce({0, 0, 600, 800});
        Collect(*root, columns);
    }

    Story::Story GetStory(std::size_t index) const
    {
        Story::Story story;
        columns.at(index)->AppendTo(story, true);
        return story;
    }

    /// "[...]" for each column, with "L", "C", "R" or "J" and the text for each paragraph; tabs are ">", forced breaks
    /// "/".
    std::string Print() const
    {
        std::string text;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            text += '[';
            const Story::Story story = GetStory(i);
            for (const Story::Story::Paragraph& paragraph : story.GetParagraphs()) {
                if (text.back() != '[') text += " | ";
                text += std::string("LCRJ").at(static_cast<std::size_t>(paragraph.atts->GetAlignment()));
                for (const char32_t c : U' ' + paragraph.GetText())
                    Kernel::CharTraits::AppendCodePoint(text, c == U'\t' ? U'>' : c == U'\n' ? U'/' : c);
            }
            text += ']';
        }
        return text;
    }

    TestDocument document;
    Kernel::Counted<GroupObject> root;
    std::vector<Kernel::Counted<ColumnObject>> columns;
};

TEST(FlowTest, GathersLinesIntoColumns)
{
    const std::tuple<const char*, std::string, const char*> rows[] = {
        {"pieces out of order", "118:two|100 700:one", "[L onetwo]"},
        {"the same words twice, shifted", "100:bold|100.4 700:bold", "[L bold][L bold]"},
        {"a third line at 2.5 heights", "100:aa|118:bb bb|107 663.1:cc", "[L aa/bb bb | L cc]"},
        {"a third line farther down", "100:aa|118:bb bb|107 662:cc", "[L aa/bb bb][L cc]"},
        {"twice as far down, with a common edge", "100:aaaa bbbb cccc|100:dddd eeee|136 658:fff",
         "[L aaaa bbbb cccc dddd eeee | L fff]"},
        {"a fourth line at 3 heights", "100:aa|118:bb bb|107:cc|111 646:dd", "[L aa/bb bb | L cc | L dd]"},
        {"far down, but where another line begins", "100:aaaa bbbb cc|112:dddd eeee|100:ff|112 636:gg",
         "[L aaaa bbbb cc dddd eeee | L ff | L gg]"},
        {"a column beside that begins lower", "100:aaaa|100:bbbb|140:cccc|140:dddd|140:eeee",
         "[J aaaa bbbb][J cccc dddd eeee]"},
        {"a line beside, too far away", "100:aa|131 700:bb", "[L aa][L bb]"},
    };
    for (const auto& [name, strings, columns] : rows)
        EXPECT_EQ(ReducedPage(strings).Print(), columns) << name;
}

TEST(FlowTest, MakesParagraphsOfLines)
{
    const char* const block = "100:one two three four|100:five six seven eight|100:nine";
    const std::tuple<const char*, std::string, const char*> rows[] = {
        {"ragged", block, "[L one two three four five six seven eight nine]"},
        {"justified", "100:aaaa bbbb cccc|100:dddd eeee ffff|100:gg", "[J aaaa bbbb cccc dddd eeee ffff gg]"},
        {"centred", "106:aaaa bbbb cc|100:dddd eeee ffff|127:ggggg", "[C aaaa bbbb cc dddd eeee ffff ggggg]"},
        {"an indented first line begins a new one",
         "100:aaaa bbbb cccc dddd|100:eeee ffff gggg|112:hhhh iiii jjjj kkk|100:llll mmmm",
         "[L aaaa bbbb cccc dddd eeee ffff gggg | L hhhh iiii jjjj kkk llll mmmm]"},
        // A short line between two others is the last of justified text.
        {"a short line", "100:aaaa bbbb cccc dddd|100:eeee|100:ffff gggg hhhh iiii",
         "[J aaaa bbbb cccc dddd eeee | J ffff gggg hhhh iiii]"},
        {"a line a little shorter", "100:aaaa bbbb cccc dddd|100:eeee ffff gggg hhh|100:iiii jjjj kkkk lll",
         "[J aaaa bbbb cccc dddd eeee ffff gggg hhh | J iiii jjjj kkkk lll]"},
        {"another size", "100 700 16:Heading|100 680:aaaa bbbb|100:cccc dddd", "[L Heading | J aaaa bbbb cccc dddd]"},
        {"a heading of the same size", "100:Heading|100 682:aaaa bbbb|100:cccc dddd",
         "[L Heading | J aaaa bbbb cccc dddd]"},
        {"a line that is nearer to the paragraph above than to the next line",
         "100 700 8:Small|100:aaaa bbbb|100 674:cccc dddd", "[L Small | L aaaa bbbb | L cccc dddd]"},
        {"a title over the middle of the column", "136 700 14:Title|100 676:aaaa bbbb cccc dddd|100:eeee",
         "[C Title | L aaaa bbbb cccc dddd eeee]"},
        {"text beside and below a drop cap",
         "100 676 36:A|122 700:aaaa bbbb|122:cccc dddd|122:eeee ffff|100:gggg hhhh iii",
         "[J Aaaaa bbbb cccc dddd eeee ffff gggg hhhh iii]"},
        {"a wider gap", "100:aaaa bbbb|100:cccc dddd|100 664:eeee ffff|100:gggg hhhh",
         "[J aaaa bbbb cccc dddd | J eeee ffff gggg hhhh]"},
    };
    for (const auto& [name, strings, columns] : rows)
        EXPECT_EQ(ReducedPage(strings).Print(), columns) << name;
    EXPECT_EQ(ReducedPage(block, TextFidelityExact).Print(),
              "[L one two three four | L five six seven eight | L nine]");
    EXPECT_EQ(ReducedPage(block, TextFidelityEditable, false).Print(),
              "[L one two three four][L five six seven eight][L nine]");
}

TEST(FlowTest, HeadersAndFootersAreColumnsOfTheirOwn)
{
    const std::string lines = "aaaa bbbb|100:cccc dddd|100:eeee ffff";
    const auto above = [&](const std::string& header) { return header + "|100 730:" + lines; };
    const auto below = [&](const std::string& footer) { return "100 124:" + lines + "|" + footer; };
    const std::string body = "J aaaa bbbb cccc dddd eeee ffff";
    const std::tuple<const char*, std::string, std::string> rows[] = {
        {"one word", above("100 760:Head"), "[L Head][" + body + "]"},
        {"reaching into the zone", "100 708:Head|100 678:aaaa bbbb|100:cccc dddd|100:eeee ffff",
         "[L Head][" + body + "]"},
        {"prose", above("100 760:He ad"), "[L He ad | " + body + "]"},
        {"near", above("100 747:Head"), "[L Head | " + body + "]"},
        {"as small as its neighbour is large", "100 770:Head|100 740 20:Title|100 715:aaaa bbbb|100:cccc dddd",
         "[L Head | L Title | L aaaa bbbb cccc dddd]"},
        {"a number", below("100 70:12"), "[" + body + "][L 12]"},
        {"high above the end", below("100 90:12"), "[" + body + " | J 12]"},
    };
    for (const auto& [name, strings, columns] : rows)
        EXPECT_EQ(ReducedPage(strings).Print(), columns) << name;
}

TEST(FlowTest, ADropCapDoesNotMoveTheBaselineOfItsText)
{
    // The gap of 7 points is a space of the cap's size.
    const ReducedPage page("100 688 30:L|125 700:ook at the lamp|125:in the tower");
    ASSERT_EQ(page.columns.size(), 1);
    EXPECT_NEAR(page.columns[0]->lines.front()->position.y, -100, 1e-6);

    // Large numerals are drop caps as well, and not the numbers of a list.
    const ReducedPage numbered("100 688 30:1|125 700:The lamp|125:is lit|100 588 30:2|125 600:The lamp|125:is lit");
    EXPECT_EQ(numbered.Print(), "[J 1The lamp is lit | J 2The lamp is lit]");
}

TEST(FlowTest, LeavesRoomAtTheRightOfRaggedText)
{
    const ReducedPage page("100:aaaa bbbb cccc dddd|100:eeee ffff gggg|100 660:hhhh iiii|100:jjjj");
    const Story::Story story = page.GetStory(0);
    ASSERT_EQ(story.GetParagraphs().size(), 2);
    // 60 points are free, of which the text keeps one of its heights.
    EXPECT_NEAR(story.GetParagraphs()[1].atts->Get(Story::ParagraphAtt::RightIndent), 60 - 10, 1e-9);
}

/// What the markers of a list have of their own becomes a style by the kind of list.
TEST(FlowTest, NamesTheStylesOfMarkers)
{
    const ReducedPage page("100 700 14:\\225 |116.8 700:aa|100 688 14:\\225 |116.8 688:bb|"
                           "100 676 12:1. |121.6 676:cc|100 664 12:2. |121.6 664:dd");
    std::string names;
    const Story::Story story = page.GetStory(0);
    for (const auto& paragraph : story.GetParagraphs())
        names += paragraph.atts->GetList()->styleName + "; ";
    EXPECT_EQ(names, "Bullet Character 1; Bullet Character 1; Numbered Character 2; Numbered Character 2; ");
}

} // namespace
} // namespace Quillet::Test
