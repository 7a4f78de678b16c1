#include "CommandRun.h"
#include "exporters/HtmlFrame.h"
#include "exporters/JsonText.h"
#include "exporters/JsonWriter.h"
#include "exporters/LongText.h"
#include "exporters/SvgColumn.h"
#include "exporters/SvgDrawing.h"
#include "exporters/TextRuns.h"
#include "support/PdfBuilder.h"

#include <Quillet/ColumnObject.h>

#include <Renderer/ColourRGB.h>
#include <Renderer/FillDescriptor.h>
#include <Renderer/FillSolid.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <pugixml.hpp>

#include <numeric>
#include <string>
#include <vector>

namespace Host::Test {
namespace {

using Json = nlohmann::json;
using Quillet::ColumnObject;
using Quillet::TextLineObject;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// Ten points of a sans serif.
Kernel::Counted<Story::GlyphAtts> MakeAtts()
{
    const auto atts = Story::GlyphAtts::GetDefault()->Clone();
    Kernel::Font font;
    font.SetPostscriptName("NimbusSans-Regular");
    atts->SetDesiredFont(font);
    atts->Set(Story::GlyphAtt::Size, 10.0);
    return atts;
}

TextLineObject::Atts Intern(const Kernel::Counted<Story::GlyphAtts>& atts)
{
    return Kernel::ConsolidateObjectSacrifice(atts);
}

Story::GlyphAtts::Fill MakeRed()
{
    const Kernel::Counted<Renderer::Fill> fill =
        Kernel::MakeCounted<Renderer::FillSolid>(Renderer::ColourRGB::Create(1, 0, 0, 1, ""));
    return Kernel::MakeCounted<Renderer::FillDescriptor>(Kernel::ConsolidateObjectSacrifice(fill),
                                                         Renderer::FillBlendMode::Normal);
}

Kernel::Counted<const Story::ListAtt> MakeList(Story::ListType type, const std::u32string& before,
                                               const std::u32string& after, int start, bool isRestart,
                                               Story::NumberFormat format = Story::NumberFormat::Decimal)
{
    const auto list = Kernel::MakeCounted<Story::ListAtt>(type);
    Story::GlyphString text;
    for (const char32_t c : before)
        text.AddChar32(c);
    if (type == Story::ListType::Number) text.Add(Story::ListNumberGlyph::EncodeLevel(0));
    for (const char32_t c : after + U"\t")
        text.AddChar32(c);
    if (type == Story::ListType::Number)
        list->SetNumberString(text);
    else
        list->SetBulletString(text);
    list->SetNumberFormat(format);
    list->SetStartNumberingAt(start);
    list->SetIsRestartNumbering(isRestart);
    list->SetTabStopIndent(18);
    return list;
}

/// A column line by line, 12 points below each other, each character five points wide.
class ColumnMaker
{
public:
    ColumnMaker& Add(const std::u32string& text, const TextLineObject::Atts& atts = Intern(MakeAtts()))
    {
        if (column->lines.empty() || isNextNew) {
            const auto line = Kernel::MakeCounted<TextLineObject>(-1);
            line->position = {10, -20 - 12.0 * static_cast<double>(column->lines.size())};
            line->SetParagraphAtts(paragraph);
            line->isParagraphFront = isFront;
            column->AddAdjacent(line);
            isFront = isNextNew = false;
        }
        TextLineObject& line = *column->lines.back();
        for (const char32_t c : text) {
            Quillet::Char character;
            character.unicode = c;
            character.width = c == U'\t' ? 30 : 5;
            character.isSpace = c == U' ';
            character.atts = atts;
            line.chars.push_back(character);
            line.width += character.width;
        }
        line.textHeight = 10;
        return *this;
    }

    ColumnMaker& EndLine()
    {
        isNextNew = true;
        return *this;
    }

    /// Ends the paragraph; the next one has these attributes.
    ColumnMaker& Begin(const Kernel::Counted<Story::ParagraphAtts>& atts)
    {
        if (!column->lines.empty()) column->lines.back()->SetIsParagraphBack(true);
        paragraph = atts;
        isFront = isNextNew = true;
        return *this;
    }

    ColumnMaker& BeginItem(const Kernel::Counted<const Story::ListAtt>& list)
    {
        const auto atts = MakeParagraph();
        atts->Set(Story::ParagraphAtt::List, list);
        atts->Set(Story::ParagraphAtt::LeftIndent, 18.0);
        return Begin(atts);
    }

    static Kernel::Counted<Story::ParagraphAtts> MakeParagraph()
    {
        const auto atts = Story::ParagraphAtts::GetDefault()->Clone();
        atts->Set(Story::ParagraphAtt::Leading, 12.0);
        return atts;
    }

    const ColumnObject& Get()
    {
        column->lines.back()->SetIsParagraphBack(true);
        return *column;
    }

    TextLineObject& GetLine(std::size_t i) { return *column->lines.at(i); }

private:
    Kernel::Counted<ColumnObject> column = Kernel::MakeCounted<ColumnObject>(-1);
    Kernel::Counted<const Story::ParagraphAtts> paragraph = MakeParagraph();
    bool isFront = true;
    bool isNextNew = true;
};

Json MakeJson(const ColumnObject& column)
{
    LongText text;
    JsonWriter json(text);
    json.BeginObject();
    AddColumn(json, column, {});
    json.EndObject();
    return Json::parse(text.Join());
}

/// An element around all elements of the column.
pugi::xml_document MakeSvg(const ColumnObject& column)
{
    const Raster::ICCManager::ICCProfileSet profiles;
    SvgDrawing drawing(profiles, "");
    AddColumn(drawing.svg, column, drawing.paint);
    LongText text;
    XmlWriter svg(text);
    svg.Begin("svg");
    drawing.MoveTo(svg);
    svg.End();
    pugi::xml_document document;
    EXPECT_TRUE(document.load_string(text.Join().c_str(), pugi::parse_full | pugi::parse_ws_pcdata));
    return document;
}

pugi::xml_document MakeHtml(const ColumnObject& column)
{
    LongText html;
    AppendFrame(html, column, {});
    pugi::xml_document document;
    const std::string text = html.Join();
    EXPECT_TRUE(document.load_string(text.c_str(), pugi::parse_full | pugi::parse_ws_pcdata)) << text;
    return document;
}

std::vector<std::string> Select(const pugi::xml_document& document, const char* path, const char* attribute)
{
    std::vector<std::string> values;
    for (const auto& found : document.select_nodes(path))
        values.push_back(*attribute ? found.node().attribute(attribute).value()
                                    : pugi::xpath_query("string()").evaluate_string(found));
    return values;
}

ColumnMaker MakeLists()
{
    using enum Story::ListType;
    using Story::NumberFormat;
    ColumnMaker maker;
    maker.BeginItem(MakeList(Bullet, U"\uF0B7", U"", 1, false)).Add(U"dot");
    maker.BeginItem(MakeList(Number, U"", U".", 3, true)).Add(U"three");
    maker.BeginItem(MakeList(Number, U"(", U")", 1, true, NumberFormat::LowerLetter)).Add(U"a");
    maker.BeginItem(MakeList(Number, U"(", U")", 1, false, NumberFormat::LowerLetter)).Add(U"b");
    maker.BeginItem(MakeList(Number, U"", U".", 1, false)).Add(U"four");
    maker.Begin(ColumnMaker::MakeParagraph()).Add(U"between");
    maker.BeginItem(MakeList(Number, U"", U".", 1, true)).Add(U"one");
    return maker;
}

std::vector<std::string> GetMarkers(const ColumnObject& column)
{
    std::vector<std::string> markers;
    const ColumnText text(column);
    for (const auto& paragraph : text.GetParagraphs())
        markers.push_back(paragraph.IsItem() ? ReplaceSymbols(paragraph.GetMarkerText()) : "");
    return markers;
}

TEST(ColumnExport, CountsTheItemsOfListsWhateverStandsBetween)
{
    ColumnMaker maker = MakeLists();
    EXPECT_THAT(GetMarkers(maker.Get()), ElementsAre("\u2022", "3.", "(a)", "(b)", "4.", "", "1."));

    // A list may begin anew behind other text without a word.
    const auto list = Kernel::MakeCounted<Story::ListAtt>(*MakeList(Story::ListType::Number, U"", U".", 5, false));
    list->SetRestartNumberingType(Story::RestartNumberingType::AfterOtherText);
    ColumnMaker alone;
    alone.BeginItem(list).Add(U"five").BeginItem(list).Add(U"six");
    alone.Begin(ColumnMaker::MakeParagraph()).Add(U"between").BeginItem(list).Add(U"five");
    EXPECT_THAT(GetMarkers(alone.Get()), ElementsAre("5.", "6.", "", "5."));
}

TEST(ColumnExport, WritesListsAsListsOfHtml)
{
    ColumnMaker maker = MakeLists();
    const auto html = MakeHtml(maker.Get());
    EXPECT_THAT(Select(html, "/div/ul/li", ""), ElementsAre("dot"));
    EXPECT_THAT(Select(html, "/div/ol", "start"), ElementsAre("3", "1", "4", "1"));
    EXPECT_THAT(Select(html, "/div/ol", "type"), ElementsAre("1", "a", "1", "1"));
    EXPECT_THAT(Select(html, "/div/ol/li", ""), ElementsAre("three", "a", "b", "four", "one"));
    EXPECT_THAT(Select(html, "/div/p", ""), ElementsAre("between"));
    EXPECT_THAT(Select(html, "/div/ul", "style")[0], HasSubstr("--before:'\u2022'"));
    EXPECT_THAT(Select(html, "/div/ol", "style")[1], HasSubstr("--before:'(';--after:')';--format:lower-alpha"));
    EXPECT_THAT(Select(html, "/div/ol/li", "style")[0], HasSubstr("--gap:18pt"));

    const auto list = MakeList(Story::ListType::Number, U"", U".", 1, false);
    const auto reaching = Kernel::MakeCounted<Story::ListAtt>(*list);
    reaching->SetAlign(Story::AlignX::Right);
    ColumnMaker right;
    right.BeginItem(reaching).Add(U"one");
    EXPECT_THAT(Select(MakeHtml(right.Get()), "/div/ol/li", "class"), ElementsAre("right"));
}

TEST(ColumnExport, WritesListsAsJson)
{
    ColumnMaker maker = MakeLists();
    const Json paragraphs = MakeJson(maker.Get())["paragraphs"];
    EXPECT_EQ(paragraphs[1]["list"],
              Json({{"type", "number"}, {"text", "%1."}, {"format", "decimal"}, {"start", 3}, {"restart", true}}));
    EXPECT_EQ(paragraphs[3]["list"]["text"], "(%1)");
    EXPECT_EQ(paragraphs[3]["list"]["format"], "lowerLetter");
    EXPECT_EQ(paragraphs[3]["list"]["restart"], false);
    EXPECT_EQ(paragraphs[0]["list"]["type"], "bullet");
    EXPECT_FALSE(paragraphs[5].contains("list") || paragraphs[5].contains("dropCap"));
    EXPECT_EQ(paragraphs[5]["text"], "between");
}

/// A left stop, and one from the right with dots.
ColumnMaker MakePrices()
{
    const auto stops = Kernel::MakeCounted<Story::TabStops>();
    stops->Set(Story::TabStop(40, Story::Tab::Left, false));
    Story::TabStop right(0, Story::Tab::Right, true);
    right.SetLeader(Story::TabLeader::Dots);
    stops->Set(right);
    const auto atts = ColumnMaker::MakeParagraph();
    atts->Set(Story::ParagraphAtt::Tabs, Kernel::Counted<const Story::TabStops>(stops));
    ColumnMaker maker;
    maker.Begin(atts).Add(U"ab\tcd\t9.50");
    return maker;
}

TEST(ColumnExport, LeavesTabsAsGapsAndDrawsTheirLeaders)
{
    ColumnMaker maker = MakePrices();
    const auto svg = MakeSvg(maker.Get());
    EXPECT_THAT(Select(svg, "//text", "transform"), ElementsAre(""));
    const double dot = MakeAtts()->GetFontMetrics()->GetGlyphMetrics(U'.').advance * 10;
    const auto count = static_cast<std::size_t>(30 / dot);
    EXPECT_THAT(Select(svg, "/svg/text/tspan", ""), ElementsAre("abcd9.50" + std::string(count, '.')));
    const auto places = Select(svg, "/svg/text/tspan/tspan", "x");
    ASSERT_GE(places.size(), 4);
    EXPECT_THAT(std::vector(places.begin(), places.begin() + 3), ElementsAre("10", "50", "90"));
    // The dots end where the price begins.
    EXPECT_NEAR(std::stod(places.back()), 90 - static_cast<double>(count) * dot, 1e-3);
}

TEST(ColumnExport, GivesTabsOfHtmlTheWidthOfTheirStops)
{
    ColumnMaker maker = MakePrices();
    const auto html = MakeHtml(maker.Get());
    EXPECT_THAT(Select(html, "//span[contains(@class,'cell')]", "style"),
                ElementsAre("min-width:40pt", "min-width:60pt"));
    EXPECT_THAT(Select(html, "//span[contains(@class,'cell')]", ""), ElementsAre("ab\t", "cd\t9.50"));
    EXPECT_THAT(Select(html, "//span[@class='fill dots']", ""), ElementsAre(""));

    // A space that only the font knows is one of the characters before the tab.
    const auto atts = ColumnMaker::MakeParagraph();
    maker.Begin(atts).Add(U"a b c\td");
    maker.Get().lines.back()->chars[1].unicode = 0;
    EXPECT_THAT(Select(MakeHtml(maker.Get()), "/div/p[2]//span[contains(@class,'cell')]", ""), ElementsAre("a b c\t"));
}

ColumnMaker MakeDropCap(bool hasSize)
{
    const auto look = Kernel::MakeCounted<Story::Delta>();
    look->doubles[Story::GlyphAtt::HorizontalScale] = 1;
    if (hasSize) look->doubles[Story::GlyphAtt::Size] = 30;
    const auto cap = Kernel::MakeCounted<Story::DropCapAtt>();
    cap->SetIsEnabled(true);
    cap->SetHeightInLines(2);
    cap->SetDistanceToText(3);
    cap->SetStyleName("Cap", look);
    const auto atts = ColumnMaker::MakeParagraph();
    atts->Set(Story::ParagraphAtt::DropCap, Kernel::Counted<const Story::DropCapAtt>(cap));
    ColumnMaker maker;
    maker.Begin(atts).Add(U"\"Once upon").EndLine().Add(U"a time");
    return maker;
}

TEST(ColumnExport, ShowsDropCapsAsLargeAsThePage)
{
    ColumnMaker maker = MakeDropCap(true);
    const auto svg = MakeSvg(maker.Get());
    ASSERT_THAT(Select(svg, "/svg/text", ""), ElementsAre("\"Once upona time"));
    EXPECT_STREQ(svg.select_node("/svg/text").node().attribute("font-size").value(), "30");
    EXPECT_THAT(Select(svg, "/svg/text/tspan", "y"), ElementsAre("32", "32"));
    EXPECT_THAT(Select(svg, "//tspan[@font-size]", "font-size"), ElementsAre("10", "10"));
    EXPECT_THAT(Select(svg, "//tspan[@font-size]", ""), ElementsAre("nce upon", "a time"));
    EXPECT_THAT(Select(svg, "//tspan[@font-size]", "y"), ElementsAre("20", "32"));

    const auto html = MakeHtml(maker.Get());
    EXPECT_THAT(Select(html, "/div/p", ""), ElementsAre("\"Once upon a time"));
    EXPECT_THAT(Select(html, "//span[@class='cap']", ""), ElementsAre("\"O"));
    EXPECT_THAT(Select(html, "//span[@class='cap']", "style")[0], HasSubstr("font-size:30pt"));
    EXPECT_THAT(Select(html, "//span[@class='cap']", "style")[0], Not(HasSubstr("top:")));

    // Without a size of its own it is as much larger as the second line is lower, by the height of an O.
    ColumnMaker plain = MakeDropCap(false);
    const auto plainSvg = MakeSvg(plain.Get());
    const double height = -MakeAtts()->GetFontMetrics()->GetGlyphMetrics(U'O').box.top;
    EXPECT_NEAR(plainSvg.select_node("/svg/text").node().attribute("font-size").as_double(), 10 + 12 / height, 1e-3);

    EXPECT_EQ(MakeJson(maker.Get())["paragraphs"][0]["dropCap"],
              Json({{"lines", 2}, {"distance", 3}, {"style", "Cap"}}));
}

TEST(ColumnExport, ShowsDecorations)
{
    const auto marked = MakeAtts();
    marked->Set(Story::GlyphAtt::HighlightFill, MakeRed());
    marked->Set(Story::GlyphAtt::Underline, 1);
    const auto struck = MakeAtts();
    struck->Set(Story::GlyphAtt::Strikeout, 1);
    ColumnMaker maker;
    maker.Add(U"plain ").Add(U"marked", Intern(marked)).Add(U" struck", Intern(struck));

    const auto svg = MakeSvg(maker.Get());
    ASSERT_STREQ(svg.first_child().first_child().name(), "rect");
    EXPECT_THAT(Select(svg, "/svg/rect", "x"), ElementsAre("40"));
    EXPECT_THAT(Select(svg, "/svg/rect", "width"), ElementsAre("30"));
    EXPECT_THAT(Select(svg, "/svg/rect", "fill"), ElementsAre("#ff0000"));
    const auto join = [](const auto& parts) { return std::accumulate(parts.begin(), parts.end(), std::string()); };
    EXPECT_EQ(join(Select(svg, "//tspan[@style='text-decoration:underline']", "")), "marked");
    EXPECT_EQ(join(Select(svg, "//tspan[@style='text-decoration:line-through']", "")), " struck");

    const auto html = MakeHtml(maker.Get());
    EXPECT_THAT(Select(html, "/div/p/span", ""), ElementsAre("marked", " struck"));
    EXPECT_THAT(Select(html, "/div/p/span", "style"),
                ElementsAre("text-decoration:underline;background-color:#ff0000", "text-decoration:line-through"));

    const Json runs = MakeJson(maker.Get())["paragraphs"][0]["runs"];
    ASSERT_EQ(runs.size(), 3);
    EXPECT_EQ(runs[1]["text"], "marked");
    EXPECT_EQ(runs[1]["underline"], true);
    EXPECT_EQ(runs[1]["highlight"]["colour"]["values"], Json({1, 0, 0}));
    EXPECT_EQ(runs[2]["strikeout"], true);
    EXPECT_FALSE(runs[0].contains("underline") || runs[0].contains("strikeout"));
}

TEST(ColumnExport, WritesRightToLeftTextAsItIsRead)
{
    ColumnMaker maker;
    maker.Add(U"דג אב").EndLine().Add(U"ab");
    const Json json = MakeJson(maker.Get());
    EXPECT_EQ(json["lines"][0]["text"], "בא גד");
    EXPECT_EQ(json["lines"][1]["text"], "ab");
    EXPECT_EQ(json["paragraphs"][0]["text"], "בא גד ab");
    EXPECT_THAT(Select(MakeHtml(maker.Get()), "/div/p", "style")[0], HasSubstr("direction:rtl"));
}

TEST(ColumnExport, KeepsWideGapsInHtml)
{
    ColumnMaker maker;
    maker.Add(U"a b").EndLine().Add(U"c d").EndLine().Add(U"e f");
    TextLineObject& second = *maker.Get().lines[1];
    second.chars[1].width = 40;
    second.chars[1].unicode = 0;
    const double blank = MakeAtts()->GetFontMetrics()->GetGlyphMetrics(U' ').advance * 10;
    const auto spans = Select(MakeHtml(maker.Get()), "/div/p/span", "style");
    ASSERT_EQ(spans.size(), 1);
    EXPECT_NEAR(std::stod(spans[0].substr(std::string("padding-right:").size())), 40 - blank, 1e-3);
}

TEST(ColumnExport, GoesBackToTheBaselineBehindARaisedRun)
{
    const auto raised = MakeAtts();
    raised->Set(Story::GlyphAtt::BaselineShift, -4.0);
    ColumnMaker maker;
    maker.Add(U"ab").Add(U"2", Intern(raised)).Add(U"cd");
    const auto svg = MakeSvg(maker.Get());
    EXPECT_THAT(Select(svg, "/svg/text/tspan", "y"), ElementsAre("20"));
    EXPECT_THAT(Select(svg, "/svg/text/tspan/tspan[@y]", "y"), ElementsAre("16", "20"));
    EXPECT_THAT(Select(svg, "/svg/text/tspan/tspan[@y]", ""), ElementsAre("2", "cd"));
}

TEST(ColumnExport, BeginsAnElementOfSvgWhereGlyphsChangeTheirScale)
{
    const auto narrow = MakeAtts();
    narrow->Set(Story::GlyphAtt::HorizontalScale, 0.5);
    ColumnMaker maker;
    maker.Add(U"wide ").Add(U"narrow", Intern(narrow)).EndLine().Add(U"wide");
    const auto svg = MakeSvg(maker.Get());
    EXPECT_THAT(Select(svg, "/svg/text", ""), ElementsAre("wide ", "narrow", "wide"));
    EXPECT_THAT(Select(svg, "/svg/text[2]", "transform"), ElementsAre("matrix(0.5 0 0 1 0 0)"));
    EXPECT_EQ(Select(svg, "/svg/text[2]//tspan[@x]", "x").front(), "70");
}

class ColumnCommandTest : public CommandRun
{
public:
    ColumnCommandTest()
    {
        folder.Put("FILE",
                   Quillet::MakePagePdf("BT /F 10 Tf 12 TL 10 80 Td (first of them) Tj T* (second of them) Tj "
                                        "T* (third of them) Tj ET",
                                        {.resources = "/Font << /F 5 0 R >>",
                                         .objects = {"<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>"}}));
    }
};

TEST_F(ColumnCommandTest, OptionsDecideWhatBecomesOfLines)
{
    const struct
    {
        std::vector<std::string> options;
        const char* type;
        std::size_t nodes;
        std::size_t paragraphs;
    } rows[] = {
        {{}, "column", 1, 1},
        {{"--fidelity", "exact"}, "column", 1, 3},
        {{"--no-grouping"}, "column", 3, 1},
        {{"--raw"}, "line", 3, 0},
    };
    for (const auto& row : rows) {
        const Json json = Json::parse(Convert("json", row.options));
        const Json& children = json["pages"][0]["root"]["children"];
        const std::string name = row.options.empty() ? "" : row.options.front();
        ASSERT_EQ(children.size(), row.nodes) << name;
        EXPECT_EQ(children[0]["type"], row.type) << name;
        if (row.paragraphs == 0) continue;
        EXPECT_EQ(children[0]["paragraphs"].size(), row.paragraphs) << name;
    }
}

TEST_F(ColumnCommandTest, WritesTheTextOfADocumentAsOneFile)
{
    EXPECT_EQ(Convert("txt"), "first of them second of them third of them\n");
    EXPECT_EQ(Convert("txt", {"--raw"}), "first of them\nsecond of them\nthird of them\n");
    const std::string html = Convert("html");
    EXPECT_THAT(html, HasSubstr("<title>FILE</title>"));
    const std::string paragraph = html.substr(html.find("<p "), html.find("</p>") + 4 - html.find("<p "));
    pugi::xml_document document;
    ASSERT_TRUE(document.load_string(paragraph.c_str(), pugi::parse_full | pugi::parse_ws_pcdata));
    EXPECT_THAT(Select(document, "/p", ""), ElementsAre("first of them second of them third of them"));
    EXPECT_THAT(html, HasSubstr("<!DOCTYPE html>"));
    EXPECT_THAT(html, Not(HasSubstr("<script")));
    EXPECT_TRUE(html.ends_with("</html>\n"));
}

} // namespace
} // namespace Host::Test
