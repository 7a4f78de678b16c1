#include <Kernel/FontMap.h>

#include <Kernel/FontCache.h>

#include <algorithm>
#include <string_view>

namespace Kernel {

namespace {

/// Families by the stems of their PostScript names, folded.
struct KnownFamily
{
    std::string_view stem;
    const char* family;
};

constexpr KnownFamily c_knownFamilies[] = {
    {"helvetica", "Helvetica"},
    {"helveticanarrow", "Helvetica Narrow"},
    {"arial", "Arial"},
    {"arialnarrow", "Arial Narrow"},
    {"times", "Times"},
    {"timesnewroman", "Times New Roman"},
    {"courier", "Courier"},
    {"couriernew", "Courier New"},
    {"symbol", "Symbol"},
    {"zapfdingbats", "ZapfDingbats"},
    {"palatino", "Palatino"},
    {"palatinolinotype", "Palatino Linotype"},
    {"bookman", "Bookman"},
    {"bookmanoldstyle", "Bookman Old Style"},
    {"avantgarde", "AvantGarde"},
    {"newcenturyschlbk", "New Century Schoolbook"},
    {"newcenturyschoolbook", "New Century Schoolbook"},
    {"zapfchancery", "ITC Zapf Chancery"},
    {"calibri", "Calibri"},
    {"cambria", "Cambria"},
    {"garamond", "Garamond"},
    {"georgia", "Georgia"},
    {"helveticaneue", "Helvetica"},
    {"centuryschoolbook", "Century Schoolbook"},
    // What TeX embeds for the PostScript fonts, under the older names of their copies.
    {"nimbusromno9l", "Nimbus Roman No9 L"},
    {"nimbussanl", "Nimbus Sans L"},
    {"nimbusmonl", "Nimbus Mono L"},
    {"urwpalladiol", "URW Palladio L"},
    {"urwbookmanl", "URW Bookman L"},
    {"urwgothicl", "URW Gothic L"},
    {"urwchanceryl", "URW Chancery L"},
    {"centuryschl", "Century Schoolbook L"},
    {"standardsyml", "Symbol"},
    {"standardsymbolsps", "Symbol"},
    {"dingbats", "ZapfDingbats"},
    // Copies under names of today.
    {"nimbusroman", "Nimbus Roman"},
    {"nimbussans", "Nimbus Sans"},
    {"nimbusmonops", "Nimbus Mono PS"},
    {"nimbusmono", "Nimbus Mono PS"},
    {"texgyretermes", "TeX Gyre Termes"},
    {"texgyreheros", "TeX Gyre Heros"},
    {"texgyrecursor", "TeX Gyre Cursor"},
    {"texgyrepagella", "TeX Gyre Pagella"},
    {"texgyrebonum", "TeX Gyre Bonum"},
    {"texgyreschola", "TeX Gyre Schola"},
    {"texgyreadventor", "TeX Gyre Adventor"},
    {"texgyrechorus", "TeX Gyre Chorus"},
    {"liberationserif", "Liberation Serif"},
    {"liberationsans", "Liberation Sans"},
    {"liberationsansnarrow", "Liberation Sans Narrow"},
    {"liberationmono", "Liberation Mono"},
    {"freeserif", "Times"},
    {"freesans", "Helvetica"},
    {"freemono", "Courier"},
    {"tinos", "Tinos"},
    {"arimo", "Arimo"},
    {"cousine", "Cousine"},
    {"carlito", "Carlito"},
    {"caladea", "Caladea"},
    {"gelasio", "Gelasio"},
};

const KnownFamily* FindKnown(std::string_view stem)
{
    const auto known = std::ranges::find(c_knownFamilies, stem, &KnownFamily::stem);
    return known == std::end(c_knownFamilies) ? nullptr : known;
}

/// The family that a name stands for without its style: all that follows a hyphen or comma goes, and the makers'
/// suffixes, and then style words until a family is known, since "Times New Roman" is one.
const KnownFamily* FindFamily(std::string_view name)
{
    std::string stem = FontCache::Fold(name.substr(0, name.find_first_of(",-")));
    const auto cut = [&stem](std::string_view suffix) {
        const bool isCut = stem.size() > suffix.size() && stem.ends_with(suffix);
        if (isCut) stem.resize(stem.size() - suffix.size());
        return isCut;
    };
    for (const std::string_view suffix : {"mt", "ps", "std", "lt", "itc"}) {
        if (!FindKnown(stem)) cut(suffix);
    }
    while (!FindKnown(stem)) {
        constexpr std::string_view c_styles[] = {"bold", "italic", "oblique", "regular", "roman"};
        if (std::ranges::none_of(c_styles, cut)) return nullptr;
    }
    return FindKnown(stem);
}

/// The style that the words in a name ask for, where the font itself does not say.
Font GetStyle(const Font& font)
{
    Font style = font;
    const auto has = [&name = font.postscriptName](const char* word) { return name.find(word) != name.npos; };
    // The copies of the PostScript fonts shorten their words, and their "Medi" is the bold of the original.
    const bool isMedi = font.postscriptName.ends_with("Medi") || has("MediItal");
    if ((has("Bold") || has("Demi") || isMedi) && style.weight == 400) style.weight = 700;
    if (has("Ital") || has("Obli") || has("Slant")) style.isItalic = true;
    return style;
}

class StandardFontMap : public FontMap
{
public:
    FontReplacement GetReplacement(const Font& font) const override
    {
        const KnownFamily* known = FindFamily(font.postscriptName.empty() ? font.family : font.postscriptName);
        if (!known) return {};
        const FontFace* face = FontCache::GetInstance().MatchKnown(known->family, GetStyle(font));
        return face ? FontReplacement{face->font, 1} : FontReplacement();
    }
};

} // namespace

Counted<const FontMap> FontMap::GetDefault()
{
    static const auto& map = *new Counted<const FontMap>(MakeCounted<StandardFontMap>());
    return map;
}

void FontMap::Add(const std::string& postscriptName, const Font& replacement)
{
    entries[postscriptName] = replacement;
}

FontReplacement FontMap::GetReplacement(const Font& font) const
{
    const auto own = entries.find(font.postscriptName);
    return own == entries.end() ? FontReplacement() : FontReplacement{own->second, 0};
}

} // namespace Kernel
