#include <Kernel/Font.h>

#include <Kernel/FontCache.h>
#include <Kernel/NumberText.h>
#include <Kernel/ToLowerCase.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>

namespace Kernel {

namespace {

/// "550wght" as tag and value.
std::optional<std::pair<std::string, double>> ParseAxis(std::string_view text)
{
    constexpr std::size_t c_tagSize = 4;
    if (text.size() <= c_tagSize) return std::nullopt;
    const std::string_view number = text.substr(0, text.size() - c_tagSize);
    if (number.find_first_not_of("0123456789.-") != number.npos) return std::nullopt;
    const auto value = NumberText::ParseReal(number);
    if (!value) return std::nullopt;
    return std::pair(std::string(text.substr(number.size())), value.value);
}

Font GetStrict(const FontCache& cache, const Font& font)
{
    if (!font.postscriptName.empty()) {
        const FontFace* face = cache.FindByPostscriptName(font.postscriptName);
        if (!face) return {};
        Font found = face->font;
        if (!font.variationParams.IsEmpty()) found.variationParams = font.variationParams;
        return found;
    }
    const FontFamily* family = cache.FindFamily(font.family);
    if (!family) return {};
    const FontFace* face = FontCache::FindInFamily(*family, font);
    const bool isSame = face && face->font.weight == font.weight && face->font.width == font.width &&
                        face->font.isItalic == font.isItalic;
    return isSame ? face->font : Font();
}

Font GetVariable(const FontCache& cache, const Font& font)
{
    const FontFamily* family = cache.FindFamily(font.family);
    if (!family) return {};
    const FontFace* face = FontCache::FindInFamily(*family, font);
    return face && face->font.isVariable ? face->font : Font();
}

/// A family that fontconfig always has an answer for.
const char* GetGenericFamily(const Font& font)
{
    constexpr unsigned char c_firstSansSerif = 11;
    if (font.panose.IsMonospaced()) return "monospace";
    if (font.panose.GetKind() == Panose::LatinScript) return "cursive";
    if (font.panose.GetKind() == Panose::LatinText && font.panose.digits[1] != 0)
        return font.panose.digits[1] < c_firstSansSerif ? "serif" : "sans-serif";
    const std::string name = ToLowerCase(font.postscriptName.empty() ? font.family : font.postscriptName);
    if (name.find("sans") != name.npos) return "sans-serif";
    for (const char* word :
         {"serif", "times", "roman", "garamond", "minion", "caslon", "century", "bookman", "palatino", "georgia",
          "cambria", "mincho", "cmr", "cmb", "cmti", "cmsl", "cmcsc", "sfrm"}) {
        if (name.find(word) != name.npos) return "serif";
    }
    return "sans-serif";
}

} // namespace

double FontVariationParams::GetDistance(const FontVariationParams& other) const
{
    double distance = 0;
    for (const auto& [tag, value] : axes) {
        const auto found = other.axes.find(tag);
        distance += found == other.axes.end() ? 1 : std::abs(value - found->second);
    }
    for (const auto& [tag, value] : other.axes)
        distance += axes.contains(tag) ? 0 : 1;
    return distance;
}

const Font& Font::GetDefault()
{
    static const Font& font = *new Font(GetClosestAvailableFont(Font(), FontMatchType::Any));
    return font;
}

const Font& Font::GetEmpty()
{
    static const Font& font = *new Font;
    return font;
}

bool Font::IsVariationOf(const Font& other) const
{
    return (isVariable || other.isVariable) && !family.empty() && family == other.family;
}

std::size_t Font::GetHash() const
{
    const std::hash<std::string> hash;
    std::size_t result = hash(postscriptName) * 31 + hash(family);
    result = result * 31 + static_cast<std::size_t>(weight);
    result = result * 31 + static_cast<std::size_t>(width);
    return result * 2 + (isItalic ? 1 : 0);
}

Font GetClosestAvailableFont(const Font& font, FontMatchType match)
{
    const FontCache& cache = FontCache::GetInstance();
    switch (match) {
    case FontMatchType::Strict:
        return GetStrict(cache, font);
    case FontMatchType::Looser:
        return GetVariable(cache, font);
    case FontMatchType::Any:
        break;
    }
    if (!font.IsEmpty()) {
        if (Font strict = GetStrict(cache, font); !strict.IsEmpty()) return strict;
    }
    const FontFace* face = font.family.empty() ? nullptr : cache.MatchKnown(font.family, font);
    if (!face) face = cache.Match(GetGenericFamily(font), font);
    return face ? face->font : Font();
}

Font TryParseVariableFontName(const Font& font)
{
    const std::string& name = font.postscriptName;
    const auto prefixEnd = name.find('_');
    if (prefixEnd == std::string::npos || prefixEnd == 0) return {};
    FontVariationParams params;
    for (std::size_t pos = prefixEnd; pos != std::string::npos;) {
        const std::size_t end = name.find('_', pos + 1);
        const auto axis = ParseAxis(std::string_view(name).substr(pos + 1, end == name.npos ? end : end - pos - 1));
        if (!axis) return {};
        params.axes.insert(*axis);
        pos = end;
    }
    const FontFamily* family = FontCache::GetInstance().FindFamily(name.substr(0, prefixEnd));
    if (!family) return {};
    for (const FontFace* face : family->faces) {
        if (!face->font.isVariable) continue;
        Font result = face->font;
        result.SetVariationParams(params);
        if (const auto weight = params.axes.find("wght"); weight != params.axes.end())
            result.SetWeight(static_cast<int>(std::clamp(weight->second, 1.0, 1000.0)));
        return result;
    }
    return {};
}

} // namespace Kernel
