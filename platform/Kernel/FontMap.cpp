#include <Kernel/FontMap.h>

#include <Kernel/FontCache.h>

#include <algorithm>
#include <string_view>

namespace Kernel {

namespace {

/// Families by the stems of their PostScript names, in lower case and without hyphens and blanks.
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
};

/// What style words leave of a name: all that follows a hyphen or comma goes, and the makers' suffixes.
std::string GetStem(std::string_view name)
{
    std::string stem;
    for (const char c : name.substr(0, name.find_first_of(",-"))) {
        if (c != ' ') stem += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    for (const std::string_view suffix : {"mt", "ps", "std", "lt", "itc"}) {
        if (stem.size() > suffix.size() && stem.ends_with(suffix)) stem.resize(stem.size() - suffix.size());
    }
    for (bool isCut = true; isCut;) {
        isCut = false;
        for (const std::string_view suffix : {"bold", "italic", "oblique", "regular", "roman"}) {
            // "Times New Roman" is a family, and "Times-Roman" has lost its style above.
            if (stem.size() <= suffix.size() || !stem.ends_with(suffix) || stem == "timesnewroman") continue;
            stem.resize(stem.size() - suffix.size());
            isCut = true;
        }
    }
    return stem;
}

/// The style that the words in a name ask for, where the font itself does not say.
Font GetStyle(const Font& font)
{
    Font style = font;
    const std::string& name = font.postscriptName;
    if (name.find("Bold") != std::string::npos && style.weight == 400) style.weight = 700;
    if (name.find("Italic") != std::string::npos || name.find("Oblique") != std::string::npos) style.isItalic = true;
    return style;
}

class StandardFontMap : public FontMap
{
public:
    FontReplacement GetReplacement(const Font& font) const override
    {
        const std::string stem = GetStem(font.postscriptName.empty() ? font.family : font.postscriptName);
        const auto known = std::ranges::find(c_knownFamilies, stem, &KnownFamily::stem);
        if (known == std::end(c_knownFamilies)) return {};
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
