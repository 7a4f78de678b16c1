#include "fonts/FontTables.h"
#include "fonts/GlyphNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>
#include <vector>

namespace Quillet {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

const StandardGlyph* FindGlyph(const char* font, std::string_view name)
{
    const StandardFontMetrics* metrics = GetStandardFontMetrics(font);
    if (!metrics) return nullptr;
    const auto found =
        std::ranges::find_if(metrics->glyphs, [name](const StandardGlyph& row) { return name == row.name; });
    return found == metrics->glyphs.end() ? nullptr : &*found;
}

std::vector<char32_t> GetCharacters(std::string_view name, bool isZapfDingbats = false)
{
    CodeSequence sequence;
    GetUnicodeSequenceFromAdobeName(name, isZapfDingbats, sequence);
    return {sequence.values.begin(), sequence.values.begin() + sequence.count};
}

TEST(FontTablesTest, AreWhole)
{
    EXPECT_EQ(c_glyphList.size(), 4281U);
    EXPECT_EQ(c_zapfDingbatsList.size(), 201U);
    EXPECT_EQ(c_latinEncodings.size(), 229U);
    EXPECT_EQ(c_macExpertEncoding.size(), 165U);
    EXPECT_EQ(c_symbolEncoding.size(), 189U);
    EXPECT_EQ(c_zapfDingbatsEncoding.size(), 188U);
    EXPECT_EQ(c_standardFontMetrics.size(), 14U);
    for (const auto list : {c_glyphList, c_zapfDingbatsList}) {
        const auto outOfOrder = std::ranges::adjacent_find(
            list, [](const GlyphListEntry& a, const GlyphListEntry& b) { return std::string_view(a.name) >= b.name; });
        EXPECT_EQ(outOfOrder, list.end()) << outOfOrder->name;
    }
}

/// A glyph name in one table that another does not know is a misprint in either.
TEST(FontTablesTest, EncodingsNameKnownGlyphs)
{
    for (const LatinEncoding& row : c_latinEncodings) {
        EXPECT_NE(GetUnicodeFromAdobeName(row.name, false), 0U) << row.name;
        const StandardGlyph* glyph = FindGlyph("Helvetica", row.name);
        const int code = row.codes[LatinEncoding::c_standard];
        if (code != 0) {
            EXPECT_TRUE(glyph && glyph->code == code) << row.name;
        }
    }
    for (const SingleEncoding& row : c_macExpertEncoding)
        EXPECT_NE(GetUnicodeFromAdobeName(row.name, false), 0U) << row.name;
    for (const SingleEncoding& row : c_symbolEncoding) {
        EXPECT_NE(GetUnicodeFromAdobeName(row.name, false), 0U) << row.name;
        const StandardGlyph* glyph = FindGlyph("Symbol", row.name);
        EXPECT_TRUE(glyph && glyph->code == row.code) << row.name;
    }
    for (const SingleEncoding& row : c_zapfDingbatsEncoding) {
        EXPECT_NE(GetUnicodeFromAdobeName(row.name, true), 0U) << row.name;
        const StandardGlyph* glyph = FindGlyph("ZapfDingbats", row.name);
        EXPECT_TRUE(glyph && glyph->code == row.code) << row.name;
    }
}

TEST(FontTablesTest, StandardFontsHaveThePublishedMetrics)
{
    const struct
    {
        const char* font;
        const char* glyph;
        int code;
        int width;
        int flags;
    } rows[] = {
        {"Helvetica", "A", 65, 667, 32},
        {"Helvetica", "Euro", -1, 556, 32},
        {"Helvetica-Bold", "A", 65, 722, 32},
        {"Helvetica-Oblique", "i", 105, 222, 96},
        {"Helvetica-BoldOblique", "A", 65, 722, 96},
        {"Times-Roman", "A", 65, 722, 34},
        {"Times-Bold", "W", 87, 1000, 34},
        {"Times-Italic", "A", 65, 611, 98},
        {"Times-BoldItalic", "A", 65, 667, 98},
        {"Symbol", "alpha", 97, 631, 4},
        {"Symbol", "Euro", 160, 750, 4},
        {"ZapfDingbats", "a1", 33, 974, 4},
        {"Courier", "Adieresis", -1, 600, 35},
        {"Courier-Bold", "A", 65, 600, 35},
        {"Courier-Oblique", "A", 65, 600, 99},
        {"Courier-BoldOblique", "A", 65, 600, 99},
    };
    for (const auto& row : rows) {
        const StandardGlyph* glyph = FindGlyph(row.font, row.glyph);
        ASSERT_TRUE(glyph) << row.font << ' ' << row.glyph;
        EXPECT_EQ(glyph->code, row.code) << row.font << ' ' << row.glyph;
        EXPECT_EQ(glyph->width, row.width) << row.font << ' ' << row.glyph;
        EXPECT_EQ(GetStandardFontMetrics(row.font)->flags, row.flags) << row.font;
    }
    for (const char* name : {"", "helvetica", "Helvetica ", "Arial", "Courier-Italic"})
        EXPECT_FALSE(GetStandardFontMetrics(name)) << name;
    for (const StandardFontMetrics& font : c_standardFontMetrics) {
        EXPECT_STREQ(font.glyphs.front().name, "space") << font.name;
        const auto coded = std::ranges::find_if(font.glyphs, [](const StandardGlyph& row) { return row.code < 1; });
        EXPECT_TRUE(std::is_sorted(font.glyphs.begin(), coded, [](const StandardGlyph& a, const StandardGlyph& b) {
            return a.code < b.code;
        })) << font.name;
        EXPECT_TRUE(std::all_of(coded, font.glyphs.end(), [](const StandardGlyph& row) { return row.code == -1; }))
            << font.name;
        if (std::string_view(font.name).starts_with("Courier")) {
            EXPECT_TRUE(std::ranges::all_of(font.glyphs, [](const StandardGlyph& row) { return row.width == 600; }));
        }
    }
}

TEST(GlyphNamesTest, StandForCharacters)
{
    const std::pair<const char*, std::vector<char32_t>> rows[] = {
        {"A", {0x41}},
        {"afii10017", {0x410}},
        {"uni20AC", {0x20AC}},
        {"uni20AC0308", {0x20AC, 0x308}},
        {"uni0041.alt", {0x41}},
        {"A.", {0x41}},
        {"f_f", {'f', 'f'}},
        {"f_f_i.liga", {'f', 'f', 'i'}},
        {"A_", {0x41}},
        {"A_nothing_B", {0x41, 0x42}},
        {"u1F600", {0x1F600}},
        {"u10FFFF", {0x10FFFF}},
        // The example of the Adobe Glyph List specification.
        {"Lcommaaccent_uni20AC0308_u1040C.alternate", {0x13B, 0x20AC, 0x308, 0x1040C}},
        {"MT65", {65}},
        {"MT000000000000065", {65}},
        {"a_a_a_a_a_a_a_a_a_a_a_a", std::vector<char32_t>(10, 'a')},
        {"uniD800", {}},
        {"uniD800DC00", {}},
        {"uni00410000", {0x41}},
        {"uni", {}},
        {"uni204", {}},
        {"uD800", {}},
        {"u110000", {}},
        {"u0", {}},
        {"MT", {}},
        {"MT0", {}},
        {"MT99999999999999999999", {}},
        {".notdef", {}},
        {"_", {}},
        {"", {}},
        {"a1", {}},
        {"g1A", {}},
    };
    for (const auto& [name, characters] : rows) {
        EXPECT_THAT(GetCharacters(name), ElementsAreArray(characters)) << name;
        EXPECT_EQ(GetUnicodeFromAdobeName(name, false), characters.empty() ? 0U : characters[0]) << name;
    }
    EXPECT_THAT(GetCharacters("a1", true), ElementsAre(0x2701U));
    EXPECT_THAT(GetCharacters("alpha", true), ElementsAre(0x3B1U));
    CodeSequence sequence(U'x');
    GetUnicodeSequenceFromAdobeName("y", false, sequence);
    EXPECT_EQ(sequence.count, 2);
}

TEST(GlyphNamesTest, GiveTheFirstNameOfACharacter)
{
    const std::pair<char32_t, const char*> rows[] = {{'A', "A"},        {' ', "space"}, {0xA0, "nbspace"},
                                                     {0x2206, "Delta"}, {0x10FFFF, ""}, {0, ""}};
    for (const auto& [character, name] : rows)
        EXPECT_EQ(GetGlyphNameFromUnicode(character), name);
}

} // namespace
} // namespace Quillet
