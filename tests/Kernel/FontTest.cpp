#include <Kernel/FontCache.h>
#include <Kernel/FontMap.h>
#include <Kernel/UnicodeCmap.h>

#include <gtest/gtest.h>

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
    const std::tuple<Font, FontMatchType, const char*> rows[] = {
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
    for (const auto& [font, match, expected] : rows) {
        EXPECT_EQ(GetClosestAvailableFont(font, match).postscriptName, expected)
            << font.postscriptName << '/' << font.family << ' ' << static_cast<int>(match);
    }
    EXPECT_EQ(Font::GetDefault(), GetClosestAvailableFont(Font(), Any));
    EXPECT_TRUE(Font::GetEmpty().IsEmpty());
}

TEST(FontMap, AnswersForTheStandardFonts)
{
    const std::pair<const char*, std::string> rows[] = {
        {"Helvetica", "NimbusSans-Regular"},
        {"Helvetica-Oblique", "NimbusSans-Italic"},
        {"Helvetica-BoldOblique", "NimbusSans-BoldItalic"},
        {"Times-Roman", "NimbusRoman-Regular"},
        {"Times-Italic", "NimbusRoman-Italic"},
        {"Courier-Bold", "NimbusMonoPS-Bold"},
        {"Symbol", "StandardSymbolsPS"},
        {"ZapfDingbats", "D050000L"},
        {"TimesNewRomanPS-BoldItalicMT", "NimbusRoman-BoldItalic"},
        {"Arial,Bold", "NimbusSans-Bold"},
        {"NimbusRomNo9L-Regu", "NimbusRoman-Regular"},
        {"NimbusRomNo9L-MediItal", "NimbusRoman-BoldItalic"},
        {"NimbusRomNo9L-Regu-Slant_167", "NimbusRoman-Italic"},
        {"NimbusMonL-BoldObli", "NimbusMonoPS-BoldItalic"},
        {"TeXGyreHeros-Bold", "NimbusSans-Bold"},
        {"StandardSymL", "StandardSymbolsPS"},
    };
    const auto map = FontMap::GetDefault();
    for (const auto& [name, expected] : rows) {
        const FontReplacement replacement = map->GetReplacement(MakeFont(name));
        EXPECT_NE(replacement.match, FontReplacement::c_none) << name;
        EXPECT_EQ(replacement.font.postscriptName, expected) << name;
        EXPECT_EQ(replacement.font.weight, expected.find("Bold") == expected.npos ? 400 : 700) << name;
        EXPECT_EQ(replacement.font.isItalic, expected.find("Italic") != expected.npos) << name;
    }
    // The style may have left the name.
    EXPECT_EQ(map->GetReplacement(MakeFont("Helvetica", "", 700, true)).font.postscriptName, "NimbusSans-BoldItalic");
    for (const char* name : {"Nofont", "", "HelveticaNeueOther", "-", ",Bold", "Bold"})
        EXPECT_EQ(map->GetReplacement(MakeFont(name)).match, FontReplacement::c_none) << name;

    FontMap own;
    own.Add("Nofont", MakeFont("A"));
    own.Add("Nofont", MakeFont("B"));
    EXPECT_EQ(own.GetReplacement(MakeFont("Nofont", "", 900)).font.postscriptName, "B");
    EXPECT_EQ(own.GetReplacement(MakeFont("Nofont")).match, 0);
    EXPECT_EQ(own.GetReplacement(MakeFont("nofont")).match, FontReplacement::c_none);
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
