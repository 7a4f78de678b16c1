#include "CommandRun.h"
#include "support/PdfBuilder.h"
#include "support/Repeat.h"

#include <Renderer/FontMetrics.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <pugixml.hpp>

#include <algorithm>
#include <string>
#include <vector>

namespace Host::Test {
namespace {

using Json = nlohmann::json;
using Quillet::PdfBuilder;
using testing::DoubleNear;
using testing::HasSubstr;
using testing::Pointwise;

constexpr const char* c_sans = "NimbusSans-Regular";

/// Every character is half an em wide. Code 1 is a control character, code 2 half of a surrogate pair, code 3 a
/// character that is none, code 4 has no character at all, code 5 one that the font lacks, and code 6 begins an order
/// to a terminal.
std::string MakeFile(const std::string& content)
{
    return Quillet::MakePagePdf(
        content,
        {.resources = "/Font << /F 5 0 R /S 7 0 R >>",
         .objects = {
             "<< /Type /Font /Subtype /Type1 /BaseFont /NimbusSans-Regular /ToUnicode 6 0 R /FirstChar 0 /Widths [" +
                 Quillet::Repeat("500 ", 256) + "] >>",
             PdfBuilder::MakeStream(
                 "1 begincodespacerange <00> <FF> endcodespacerange 6 beginbfchar <01> "
                 "<0007> <02> <D83D> <03> <FFFE> <04> <0000> <05> <4E00> <06> <009B> endbfchar 1 beginbfrange <20> "
                 "<7E> <0020> endbfrange"),
             "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica-Oblique >>"}});
}

class TextExportTest : public CommandRun
{
public:
    std::string ConvertText(const std::string& content, const std::string& suffix)
    {
        folder.Put("FILE", MakeFile(content));
        return Convert(suffix, {"--raw"});
    }

    /// The text elements of the page.
    std::vector<pugi::xml_node> ConvertToSvg(const std::string& content)
    {
        const std::string text = ConvertText(content, "svg");
        EXPECT_TRUE(svg.load_string(text.c_str(), pugi::parse_full | pugi::parse_ws_pcdata)) << text;
        std::vector<pugi::xml_node> nodes;
        for (const auto& found : svg.select_nodes("//*[local-name()='text']"))
            nodes.push_back(found.node());
        return nodes;
    }

    pugi::xml_document svg;
};

TEST_F(TextExportTest, WritesLinesAndTheirRunsAsJson)
{
    const Json json = Json::parse(ConvertText(
        "BT 10 80 Td /F 10 Tf (ab ) Tj 1 0 0 rg 2 Tr 50 Tz (cd) Tj 100 Tz 0 Tr /F 6 Tf 3 Ts (2) Tj ET", "json"));
    const Json& line = json["pages"][0]["root"]["children"][0];
    const Json& runs = line["runs"];
    EXPECT_EQ(line["type"], "line");
    EXPECT_EQ(line["position"], Json({10, 20}));
    EXPECT_EQ(line["width"], 23);
    EXPECT_EQ(line["height"], 10);
    EXPECT_EQ(line["text"], "ab cd2");
    ASSERT_EQ(runs.size(), 3);
    const char* texts[] = {"ab ", "cd", "2"};
    for (std::size_t i = 0; i < 3; ++i) {
        const Json& run = runs[i];
        EXPECT_EQ(run["text"], texts[i]);
        EXPECT_EQ(run["font"], c_sans);
        EXPECT_EQ(run["size"], i == 2 ? 6 : 10);
        EXPECT_EQ(run["horizontalScale"], i == 1 ? 0.5 : 1);
        EXPECT_EQ(run["baselineShift"], i == 2 ? 3 : 0);
        EXPECT_EQ(run["stroke"].is_null(), i != 1);
        EXPECT_EQ(run["fill"] == runs[0]["fill"], i == 0);
        EXPECT_TRUE(run["highlight"].is_null());
        for (const char* key : {"shear", "letterSpacing", "kerning"})
            EXPECT_EQ(run[key], 0) << key;
        EXPECT_FALSE(run.contains("underline") || run.contains("strikeout"));
    }
}

TEST_F(TextExportTest, PlacesWordsInSvgWholeAndTheirLettersNearTheirPlaces)
{
    Kernel::Font font;
    font.SetPostscriptName(c_sans);
    const auto metrics = Renderer::FontMetrics::Make(font);
    const struct
    {
        const char* shown;
        std::vector<std::string> pieces;
        /// Of all letters, in points from the start of the line.
        std::vector<double> places;
    } rows[] = {
        {"(abc no W) Tj", {"abc ", "no ", "W"}, {0, 5, 10, 20, 25, 35}},
        // The font kerns these closer.
        {"(AVAVA) Tj", {"AVAVA"}, {0, 5, 10, 15, 20}},
        {"[(a) -150 (b) 150 (c)] TJ", {"ab", "c"}, {0, 6.5, 10}},
        {"1 Tc (abc) Tj", {"abc"}, {0, 6, 12}},
        // Nobody knows how wide the glyph of a character is that the font lacks.
        {"(a\\005b) Tj", {"a", "\u4E00", "b"}, {0, 5, 10}},
        // Code 1 has no character that XML can hold.
        {"(a\\001b) Tj", {"a", "b"}, {0, 10}},
    };
    for (const auto& row : rows) {
        const auto nodes = ConvertToSvg(std::string("BT 10 80 Td /F 10 Tf ") + row.shown + " ET");
        ASSERT_EQ(nodes.size(), 1) << row.shown;
        EXPECT_STREQ(nodes[0].attribute("transform").value(), "matrix(1 0 0 1 10 20)");
        EXPECT_STREQ(nodes[0].attribute("font-size").value(), "10");
        EXPECT_THAT(nodes[0].attribute("font-family").value(), HasSubstr("Nimbus Sans"));
        std::vector<std::string> pieces;
        std::vector<double> places;
        for (const auto& span : nodes[0].children("tspan")) {
            const std::string text = span.text().get();
            pieces.push_back(text);
            double pen = span.attribute("x").as_double(-1);
            // What a renderer does, as far as the letters are of one byte.
            for (std::size_t i = 0; i < text.size() && text[i] != ' '; ++i) {
                places.push_back(pen);
                if (static_cast<unsigned char>(text[i]) >= 0x80) break;
                const auto glyph = metrics->GetGlyphMetrics(static_cast<unsigned char>(text[i]));
                const int next =
                    i + 1 < text.size() ? metrics->GetGlyphMetrics(static_cast<unsigned char>(text[i + 1])).id : 0;
                pen += (glyph.advance + metrics->GetAutoKerning(glyph.id, next)) * 10 +
                       span.attribute("letter-spacing").as_double();
            }
        }
        EXPECT_EQ(pieces, row.pieces) << row.shown;
        EXPECT_THAT(places, Pointwise(DoubleNear(0.51), row.places)) << row.shown;
    }
}

TEST_F(TextExportTest, ShowsTextInSvgAsThePageDoes)
{
    const struct
    {
        const char* content;
        std::vector<std::pair<const char*, const char*>> attributes;
    } rows[] = {
        // Where the matrices say, with the size left to the font.
        {"1 0 0 1 10 80 Tm (ab) Tj", {{"transform", "matrix(1 0 0 1 10 20)"}, {"font-size", "10"}}},
        {"2 0 0 3 10 80 Tm (ab) Tj", {{"transform", "matrix(0.666666667 0 0 1 10 20)"}, {"font-size", "30"}}},
        {"50 Tz 10 80 Td (ab) Tj", {{"transform", "matrix(0.5 0 0 1 10 20)"}, {"font-size", "10"}}},
        {"0 1 -1 0 10 80 Tm (ab) Tj", {{"transform", "matrix(0 -1 1 0 10 20)"}, {"font-size", "10"}}},
        {"1 0 0.5 1 10 80 Tm (ab) Tj", {{"transform", "matrix(1 0 -0.5 1 10 20)"}, {"font-size", "10"}}},
        {"10 80 Td 4 Ts (ab) Tj", {{"transform", "matrix(1 0 0 1 10 16)"}, {"font-size", "10"}}},
        // Painted or hidden.
        {"1 0 0 rg (a) Tj", {{"fill", "#ff0000"}, {"stroke", ""}}},
        {"1 0 0 rg 1 Tr (a) Tj", {{"fill", "none"}, {"stroke", "#000000"}}},
        {"1 0 0 rg 2 Tr (a) Tj", {{"fill", "#ff0000"}, {"stroke", "#000000"}}},
        {"3 Tr (a) Tj", {{"fill", "none"}, {"stroke", ""}}},
    };
    for (const auto& row : rows) {
        const auto nodes = ConvertToSvg(std::string("BT /F 10 Tf ") + row.content + " ET");
        ASSERT_EQ(nodes.size(), 1) << row.content;
        for (const auto& [name, value] : row.attributes)
            EXPECT_STREQ(nodes[0].attribute(name).value(), value) << row.content;
    }
    EXPECT_TRUE(ConvertToSvg("BT /F 10 Tf 7 Tr (a) Tj ET").empty());
    EXPECT_TRUE(ConvertToSvg("BT /F 0 Tf (a) Tj ET").empty());
}

TEST_F(TextExportTest, WritesWhatEachFormatCanHold)
{
    const Json json = Json::parse(ConvertText("BT /F 10 Tf (a\\001b\\002c\\003d\\004e) Tj ET", "json"));
    const std::string text = json["pages"][0]["root"]["children"][0]["text"];
    for (const char* letter : {"a", "b", "c", "d", "e"})
        EXPECT_THAT(text, HasSubstr(letter));
    EXPECT_EQ(Json::parse(Json(text).dump()), Json(text));

    const auto nodes = ConvertToSvg("BT /F 10 Tf (<a&\\001b\\002\">) Tj (c\\003d\\004) Tj ET");
    ASSERT_EQ(nodes.size(), 1);
    const std::string xml = pugi::xpath_query("string()").evaluate_string(nodes[0]);
    EXPECT_THAT(xml, HasSubstr("<a&b"));
    EXPECT_THAT(xml, HasSubstr("\">c"));
    EXPECT_TRUE(std::ranges::all_of(xml, [](char c) { return static_cast<unsigned char>(c) >= 0x20; }));
    EXPECT_EQ(xml.find("\xEF\xBF\xBE"), std::string::npos);
    EXPECT_EQ(xml.find("\xED\xA0"), std::string::npos);

    EXPECT_EQ(ConvertText("BT /F 10 Tf (a\\001b\\006c) Tj ET", "txt"), "abc\n");
}

TEST_F(TextExportTest, ListsTheFontsOfADocument)
{
    folder.Put("FILE", MakeFile("BT /F 10 Tf (a) Tj ET"));
    ASSERT_EQ(Run({"info", "FILE"}), 0);
    EXPECT_THAT(output, HasSubstr("NimbusSans-Regular, Type1, not embedded, on this machine\n"));
    EXPECT_THAT(output, HasSubstr("Helvetica-Oblique, Type1, not embedded, shown in NimbusSans-Italic\n"));
    ASSERT_EQ(Run({"info", "--json", "FILE"}), 0);
    const Json fonts = Json::parse(output)["fonts"];
    const auto makeFont = [](const char* name, bool isAvailable, const char* shownIn) {
        return Json({{"name", name},
                     {"subtype", "Type1"},
                     {"embedded", false},
                     {"available", isAvailable},
                     {"shownIn", shownIn}});
    };
    EXPECT_THAT(fonts, testing::UnorderedElementsAre(makeFont(c_sans, true, c_sans),
                                                     makeFont("Helvetica-Oblique", false, "NimbusSans-Italic")));
}

} // namespace
} // namespace Host::Test
