#include <Kernel/FontCache.h>
#include <Kernel/FontMap.h>
#include <Kernel/UnicodeCmap.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace Kernel;

Font MakeFont(const std::string& name, const std::string& family = "", int weight = 400, bool isItalic = false)
{
    Font font;
    font.SetPostscriptName(name);
    font.SetFamily(family);
    font.SetWeight(weight);
    font.SetIsItalic(isItalic);
    return font;
}

TEST(Font, IsFoundAsStrictlyAsAsked)
{
    using enum FontMatchType;
    Font even = MakeFont("Nofont");
    even.panose.SetIsMonospaced();
    const struct
    {
        Font font;
        FontMatchType match;
        const char* expected;
    } rows[] = {
        {MakeFont("NimbusSans-Regular"), Strict, "NimbusSans-Regular"},
        {MakeFont("NimbusSans-Regular", "DejaVu Sans", 700), Strict, "NimbusSans-Regular"},
        {MakeFont("nimbussans-regular"), Strict, ""},
        {MakeFont("Helvetica"), Strict, ""},
        {MakeFont("", "Nimbus Sans", 700), Strict, "NimbusSans-Bold"},
        {MakeFont("", "nimbussans", 700, true), Strict, "NimbusSans-BoldItalic"},
        {MakeFont("", "Nimbus Sans", 500), Strict, ""},
        {MakeFont("", "No family"), Strict, ""},
        {Font(), Strict, ""},
        // None of these families is a variable one.
        {MakeFont("NimbusSans-Regular", "Nimbus Sans"), Looser, ""},
        {Font(), Looser, ""},
        {MakeFont("NimbusSans-Regular"), Any, "NimbusSans-Regular"},
        {MakeFont("", "Nimbus Sans", 600), Any, "NimbusSans-Bold"},
        {MakeFont("", "Helvetica", 700), Any, "NimbusSans-Bold"},
        {MakeFont("Nofont"), Any, "DejaVuSans"},
        {MakeFont("Nofont", "", 700), Any, "DejaVuSans-Bold"},
        {even, Any, "DejaVuSansMono"},
        {MakeFont("CMR10"), Any, "DejaVuSerif"},
        {MakeFont("SansSerif"), Any, "DejaVuSans"},
        {Font(), Any, "DejaVuSans"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(GetClosestAvailableFont(row.font, row.match).postscriptName, row.expected)
            << row.font.postscriptName << '/' << row.font.family << ' ' << static_cast<int>(row.match);
    }
    EXPECT_EQ(Font::GetDefault(), GetClosestAvailableFont(Font(), Any));
    EXPECT_TRUE(Font::GetEmpty().IsEmpty());
}

TEST(FontMap, AnswersForTheStandardFonts)
{
    const struct
    {
        const char* name;
        const char* expected;
        int weight;
        bool isItalic;
    } rows[] = {
        {"Helvetica", "NimbusSans-Regular", 400, false},
        {"Helvetica-Bold", "NimbusSans-Bold", 700, false},
        {"Helvetica-Oblique", "NimbusSans-Italic", 400, true},
        {"Helvetica-BoldOblique", "NimbusSans-BoldItalic", 700, true},
        {"Times-Roman", "NimbusRoman-Regular", 400, false},
        {"Times-Bold", "NimbusRoman-Bold", 700, false},
        {"Times-Italic", "NimbusRoman-Italic", 400, true},
        {"Times-BoldItalic", "NimbusRoman-BoldItalic", 700, true},
        {"Courier", "NimbusMonoPS-Regular", 400, false},
        {"Courier-Bold", "NimbusMonoPS-Bold", 700, false},
        {"Courier-Oblique", "NimbusMonoPS-Italic", 400, true},
        {"Courier-BoldOblique", "NimbusMonoPS-BoldItalic", 700, true},
        {"Symbol", "StandardSymbolsPS", 400, false},
        {"ZapfDingbats", "D050000L", 400, false},
        {"TimesNewRomanPS-BoldItalicMT", "NimbusRoman-BoldItalic", 700, true},
        {"Arial,Bold", "NimbusSans-Bold", 700, false},
        {"NimbusRomNo9L-Regu", "NimbusRoman-Regular", 400, false},
        {"NimbusRomNo9L-MediItal", "NimbusRoman-BoldItalic", 700, true},
        {"NimbusRomNo9L-Regu-Slant_167", "NimbusRoman-Italic", 400, true},
        {"NimbusMonL-BoldObli", "NimbusMonoPS-BoldItalic", 700, true},
        {"TeXGyreHeros-Bold", "NimbusSans-Bold", 700, false},
        {"StandardSymL", "StandardSymbolsPS", 400, false},
    };
    const auto map = FontMap::GetDefault();
    for (const auto& row : rows) {
        const FontReplacement replacement = map->GetReplacement(MakeFont(row.name));
        EXPECT_NE(replacement.match, FontReplacement::c_none) << row.name;
        EXPECT_EQ(replacement.font.postscriptName, row.expected) << row.name;
        EXPECT_EQ(replacement.font.weight, row.weight) << row.name;
        EXPECT_EQ(replacement.font.isItalic, row.isItalic) << row.name;
    }
    // The style may have left the name.
    EXPECT_EQ(map->GetReplacement(MakeFont("Helvetica", "", 700, true)).font.postscriptName, "NimbusSans-BoldItalic");
    for (const char* name : {"Nofont", "", "HelveticaNeueOther", "-", ",Bold", "Bold"})
        EXPECT_EQ(map->GetReplacement(MakeFont(name)).match, FontReplacement::c_none) << name;
}

TEST(FontMap, AnswersWhatWasAdded)
{
    FontMap map;
    EXPECT_EQ(map.GetReplacement(MakeFont("Nofont")).match, FontReplacement::c_none);
    map.Add("Nofont", MakeFont("A"));
    map.Add("Nofont", MakeFont("B"));
    EXPECT_EQ(map.GetReplacement(MakeFont("Nofont", "", 900)).font.postscriptName, "B");
    EXPECT_EQ(map.GetReplacement(MakeFont("Nofont")).match, 0);
    EXPECT_EQ(map.GetReplacement(MakeFont("nofont")).match, FontReplacement::c_none);
}

TEST(Font, ParsesNoNamesOfOthersAsVariable)
{
    for (const char* name : {"", "_550wght", "Nofont_550wght", "DejaVuSans_550wght", "DejaVuSans_wght",
                             "DejaVuSans_5x0wght", "DejaVuSans_", "DejaVuSans_550wght_", "DejaVuSans"})
        EXPECT_TRUE(TryParseVariableFontName(MakeFont(name)).IsEmpty()) << name;
}

TEST(UnicodeCmap, ListsTheCharactersOfAFont)
{
    const auto cmap = UnicodeCmap::Make(MakeFont("NimbusSans-Regular"));
    ASSERT_TRUE(cmap);
    char32_t end = 0;
    for (const auto& range : cmap->GetRanges()) {
        EXPECT_GE(range.first, end);
        EXPECT_LE(range.first, range.last);
        end = range.last + 2;
        for (char32_t character = range.first; character <= range.last; ++character)
            EXPECT_GT(cmap->GetGlyphIndex(character), 0) << static_cast<unsigned>(character);
        EXPECT_EQ(cmap->GetGlyphIndex(range.last + 1), 0);
    }
    EXPECT_GT(cmap->GetGlyphIndex(U'A'), 0);
    EXPECT_NE(cmap->GetGlyphIndex(U'A'), cmap->GetGlyphIndex(U'B'));
    EXPECT_EQ(cmap->GetGlyphIndex(U'\u4E00'), 0);
    EXPECT_FALSE(UnicodeCmap::Make(MakeFont("Nofont")));
    EXPECT_FALSE(UnicodeCmap::Make(Font()));
}

} // namespace
