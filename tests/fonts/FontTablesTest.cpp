#include "fonts/FontTables.h"
#include "fonts/GlyphNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>
#include <vector>

namespace Quillet {
namespace {

const StandardGlyph* FindGlyph(const char* font, std::string_view name)
{
    const StandardFontMetrics* metrics = GetStandardFontMetrics(font);
    if (!metrics) return nullptr;
    const auto found =
        std::ranges::find_if(metrics->glyphs, [name](const StandardGlyph& row) { return name == row.name; });
    return found == metrics->glyphs.end() ? nullptr : &*found;
}

std::u32string GetCharacters(std::string_view name, bool isZapfDingbats = false)
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
    const auto check = [](const char* name, const char* font, int code, bool isZapfDingbats = false) {
        EXPECT_NE(GetUnicodeFromAdobeName(name, isZapfDingbats), 0U) << name;
        if (!font) return;
        const StandardGlyph* glyph = FindGlyph(font, name);
        EXPECT_TRUE(glyph && glyph->code == code) << name;
    };
    for (const LatinEncoding& row : c_latinEncodings) {
        const int code = row.codes[LatinEncoding::c_standard];
        check(row.name, code != 0 ? "Helvetica" : nullptr, code);
    }
    for (const SingleEncoding& row : c_macExpertEncoding)
        check(row.name, nullptr, 0);
    for (const SingleEncoding& row : c_symbolEncoding)
        check(row.name, "Symbol", row.code);
    for (const SingleEncoding& row : c_zapfDingbatsEncoding)
        check(row.name, "ZapfDingbats", row.code, true);
}

TEST(FontTablesTest, StandardFontsHaveThePublishedMetrics)
{
    const struct
    {
        const char* font;
        int flags;
        const char* glyph;
        int code;
        int width;
    } rows[] = {
        {"Helvetica", 32, "Euro", -1, 556},       {"Helvetica-Bold", 32, "A", 65, 722},
        {"Helvetica-Oblique", 96, "i", 105, 222}, {"Helvetica-BoldOblique", 96, "A", 65, 722},
        {"Times-Roman", 34, "A", 65, 722},        {"Times-Bold", 34, "W", 87, 1000},
        {"Times-Italic", 98, "A", 65, 611},       {"Times-BoldItalic", 98, "A", 65, 667},
        {"Symbol", 4, "Euro", 160, 750},          {"ZapfDingbats", 4, "a1", 33, 974},
        {"Courier", 35, "Adieresis", -1, 600},    {"Courier-Bold", 35, "A", 65, 600},
        {"Courier-Oblique", 99, "A", 65, 600},    {"Courier-BoldOblique", 99, "A", 65, 600},
    };
    for (const auto& row : rows) {
        const StandardGlyph* glyph = FindGlyph(row.font, row.glyph);
        ASSERT_TRUE(glyph) << row.font;
        EXPECT_EQ(glyph->code, row.code) << row.font;
        EXPECT_EQ(glyph->width, row.width) << row.font;
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
    const std::pair<const char*, std::u32string> rows[] = {
        {"A", U"A"},
        {"afii10017", U"\u0410"},
        {"uni20AC", U"\u20AC"},
        {"uni20AC0308", U"\u20AC\u0308"},
        {"uni0041.alt", U"A"},
        {"A.", U"A"},
        {"f_f", U"ff"},
        {"f_f_i.liga", U"ffi"},
        {"A_", U"A"},
        {"A_nothing_B", U"AB"},
        {"u1F600", U"\U0001F600"},
        {"u10FFFF", U"\U0010FFFF"},
        // The example of the Adobe Glyph List specification.
        {"Lcommaaccent_uni20AC0308_u1040C.alternate", U"\u013B\u20AC\u0308\U0001040C"},
        {"MT65", U"A"},
        {"MT000000000000065", U"A"},
        {"a_a_a_a_a_a_a_a_a_a_a_a", U"aaaaaaaaaa"},
        {"uni00410000", U"A"},
    };
    for (const auto& [name, characters] : rows) {
        EXPECT_EQ(GetCharacters(name), characters) << name;
        EXPECT_EQ(GetUnicodeFromAdobeName(name, false), characters[0]) << name;
    }
    for (const char* name : {"uniD800", "uniD800DC00", "uni", "uni204", "uD800", "u110000", "u0", "MT", "MT0",
                             "MT99999999999999999999", ".notdef", "_", "", "a1", "g1A"}) {
        EXPECT_EQ(GetCharacters(name), U"") << name;
        EXPECT_EQ(GetUnicodeFromAdobeName(name, false), 0U) << name;
    }
    EXPECT_EQ(GetCharacters("a1", true) + GetCharacters("alpha", true), U"\u2701\u03B1");
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
