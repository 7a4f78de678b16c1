#include "fonts/InstallableFont.h"

#include "document/Dictionary.h"
#include "document/Limits.h"

#include <Quillet/Budget.h>
#include <Quillet/PdfDocument.h>

#include <Kernel/FontCache.h>
#include <Kernel/HashAccumulator.h>
#include <Kernel/ToLowerCase.h>
#include <Story/GlyphAtts.h>

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <utility>

namespace Quillet {

namespace {

using Kernel::FontMatchType;
using Kernel::GetClosestAvailableFont;

/// What the words at the end of a name say.
struct StyleWord
{
    std::initializer_list<std::string_view> suffixes;
    int weight = 0;
    bool isItalic = false;
    int width = 0;
};

constexpr int c_regular = 400;

const StyleWord c_styleWords[] = {
    {{"mt"}},
    {{"semibold", "demibold"}, 600},
    {{"ultrabold", "extrabold"}, 800},
    {{"extrablack"}, 900},
    {{"ultralight"}, 200},
    {{"bold", "bd"}, 700},
    {{"thin", "th"}, 100},
    {{"light"}, 300},
    {{"regular", "book"}, c_regular},
    {{"medium", "md"}, 500},
    {{"heavy", "hv"}, 900},
    {{"black"}, 900},
    {{"italic", "it"}, 0, true},
    {{"oblique", "ob"}, 0, true},
    {{"ext"}, 0, false, Kernel::FontWidth::Expanded},
    {{"condensed", "cond", "cn"}, 0, false, Kernel::FontWidth::Condensed},
    {{"narrow"}, 0, false, Kernel::FontWidth::Condensed},
};

} // namespace

const Kernel::FontMap* GetFontMap(const Ref& ref)
{
    return ref.document ? ref.document->GetFontMap().Get() : nullptr;
}

InstallableFont::InstallableFont() : requestedFont(Kernel::Font::GetDefault())
{
    documentName = requestedFont.postscriptName;
    MapFonts();
}

InstallableFont::InstallableFont(Dictionary& dictionary) : Font(dictionary)
{
    const Kernel::FontMap* fontMap = GetFontMap(dictionary.object);
    const std::string name = dictionary.GetName("BaseFont");
    if (name.empty()) {
        SetUniqueName(MakeUniqueName(dictionary), fontMap);
        return;
    }
    // The font keeps the name as it is asked for, as it is shown, and as the file has it.
    Budget::Spend(4 * name.size());
    documentName = HasSubsetPrefix(name) ? name.substr(7) : name;
    requestedFont.SetPostscriptName(name);
    if (!MapFonts() && StripMultipleMasterSuffix()) MapFonts();
    if (!isAvailable) GuessStyle(fontMap);
}

bool InstallableFont::operator==(const Font& other) const
{
    const auto* font = dynamic_cast<const InstallableFont*>(&other);
    return font && requestedFont == font->requestedFont && flags == font->flags;
}

void InstallableFont::AddTo(Story::GlyphAtts& atts) const
{
    atts.SetDesiredFont(effectiveFont);
}

bool InstallableFont::HasSubsetPrefix(const std::string& name)
{
    return name.size() >= 8 && name[6] == '+' &&
           std::all_of(name.begin(), name.begin() + 6, [](char c) { return c >= 'A' && c <= 'Z'; });
}

std::string InstallableFont::StripInstanceSuffix(const std::string& name)
{
    const auto hyphen = name.rfind('-');
    return hyphen == name.npos || hyphen == 0 ? std::string() : name.substr(0, hyphen);
}

bool InstallableFont::StripSuffix(std::string& name, std::string_view suffix)
{
    if (!name.ends_with(suffix)) return false;
    name.resize(name.size() - suffix.size());
    return true;
}

bool InstallableFont::MapFonts()
{
    std::string& name = requestedFont.postscriptName;
    if (HasSubsetPrefix(name)) name.erase(0, 7);
    TryParsePostscriptName();
    if (requestedFont.IsEmpty()) return false;
    if (Use(GetClosestAvailableFont(requestedFont, FontMatchType::Strict)) || Use(FindVariation())) return true;
    const std::string stripped = StripInstanceSuffix(name);
    if (stripped.empty()) return false;
    requestedFont.SetPostscriptName(stripped);
    return Use(GetClosestAvailableFont(requestedFont, FontMatchType::Strict));
}

bool InstallableFont::Use(const Kernel::Font& found)
{
    isAvailable = !found.IsEmpty();
    if (isAvailable) requestedFont = effectiveFont = found;
    return isAvailable;
}

Kernel::Font InstallableFont::FindVariation() const
{
    Kernel::Font closest = GetClosestAvailableFont(requestedFont, FontMatchType::Looser);
    if (!closest.IsVariationOf(requestedFont)) return {};
    if (closest.variationParams.GetDistance(requestedFont.variationParams) != 0) {
        closest.ResetPostscriptName();
        closest.SetVariationParams(requestedFont.variationParams);
    }
    return closest;
}

bool InstallableFont::TryParsePostscriptName()
{
    if (Kernel::FontCache::GetInstance().FindFontFamilyByPostscriptName(requestedFont.postscriptName)) return true;
    const Kernel::Font variable = Kernel::TryParseVariableFontName(requestedFont);
    if (variable.IsEmpty()) return false;
    requestedFont = variable;
    return true;
}

bool InstallableFont::StripMultipleMasterSuffix()
{
    const std::string& name = requestedFont.postscriptName;
    const auto place = name.find("MM");
    if (place == name.npos || place < 1 || place + 3 >= name.size()) return false;
    const char next = name[place + 2];
    if (next != '-' && next != '_' && subtype != "MMType1") return false;
    requestedFont.SetPostscriptName(name.substr(0, place));
    return true;
}

void InstallableFont::GuessStyle(const Kernel::FontMap* fontMap)
{
    if (requestedFont.IsEmpty()) return;
    // The style often is what stands behind the hyphen, and has been cut off the name to ask for.
    const std::string& name = requestedFont.postscriptName;
    const int named = GuessStyleFrom(name);
    const int weight = documentName.starts_with(name) ? GuessStyleFrom(documentName.substr(name.size())) : 0;
    // The name of a family may have a word for a weight too, as that of a schoolbook has, which the style overrides.
    if (weight == 0 || (weight == c_regular && named != 0)) {
        if (named != 0) requestedFont.SetWeight(named);
    } else {
        requestedFont.SetWeight(weight);
    }
    UpdateEffectiveFont(fontMap);
}

int InstallableFont::GuessStyleFrom(std::string name)
{
    int weight = 0;
    if (name.size() > Limits::c_maxStyleLength) name.erase(0, name.size() - Limits::c_maxStyleLength);
    name = Kernel::ToLowerCase(std::move(name));
    for (std::size_t length = name.size() + 1; name.size() < length;) {
        length = name.size();
        for (const StyleWord& word : c_styleWords) {
            const bool isFound = std::ranges::any_of(
                word.suffixes, [&name](std::string_view suffix) { return StripSuffix(name, suffix); });
            if (!isFound) continue;
            // Words may stand apart.
            while (name.ends_with(',') || name.ends_with('-') || name.ends_with(' '))
                name.pop_back();
            // A regular bold is bold.
            if (word.weight != 0 && (weight == 0 || word.weight != c_regular)) weight = word.weight;
            if (word.isItalic) requestedFont.SetIsItalic(true);
            if (word.width != 0) requestedFont.SetWidth(static_cast<Kernel::FontWidth::Type>(word.width));
        }
    }
    if (name.find("condensed") != name.npos) requestedFont.SetWidth(Kernel::FontWidth::Condensed);
    return weight;
}

void InstallableFont::UpdateEffectiveFont(const Kernel::FontMap* fontMap)
{
    if (!fontMap) {
        effectiveFont = GetClosestAvailableFont(requestedFont, FontMatchType::Any);
        return;
    }
    // The name in the file says more than what is left of it, of the style above all.
    Kernel::Font whole = requestedFont;
    if (!documentName.empty()) whole.SetPostscriptName(documentName);
    Kernel::FontReplacement replacement = fontMap->GetReplacement(whole);
    if (replacement.match == Kernel::FontReplacement::c_none) replacement = fontMap->GetReplacement(requestedFont);
    if (replacement.match != Kernel::FontReplacement::c_none) {
        effectiveFont = replacement.font;
        return;
    }
    effectiveFont = GetClosestAvailableFont(requestedFont, FontMatchType::Strict);
    if (effectiveFont.IsEmpty()) effectiveFont = requestedFont;
}

std::string InstallableFont::MakeUniqueName(Dictionary& dictionary) const
{
    std::size_t hash = 0;
    const auto add = [&hash](const void* bytes, std::size_t size) {
        Kernel::HashAccumulator::AddToHash(hash, bytes, size);
    };
    const std::string object = dictionary.object.GetName();
    add(object.data(), object.size());
    const unsigned char hasEncoding = dictionary.Has("Encoding") ? 1 : 0;
    add(&hasEncoding, sizeof hasEncoding);
    std::vector<double> widths;
    dictionary.GetRealVec("Widths", widths);
    for (const double width : widths) {
        static constexpr char c_zeros[4] = {};
        if (width == 0) {
            add(c_zeros, sizeof c_zeros);
        } else {
            add(&width, sizeof width);
        }
    }
    if (const Ref procedures = dictionary.GetRef("CharProcs"); !procedures.IsNull()) {
        for (const std::string& key : Dictionary(procedures).GetKeys())
            add(key.data(), key.size());
    }

    std::string name = subtype + "+AAAA";
    auto seed = static_cast<std::uint32_t>(hash);
    for (int tries = 0; tries < 1000; ++tries) {
        for (std::size_t i = name.size() - 4; i < name.size(); ++i) {
            seed = seed * 214013u + 2531011u;
            name[i] = static_cast<char>('A' + (seed >> 16) % 26);
        }
        const auto document = dictionary.object.document;
        if (!document || document->IsFontPostscriptNameUnique(name)) break;
    }
    return name;
}

void InstallableFont::SetUniqueName(const std::string& name, const Kernel::FontMap* fontMap)
{
    requestedFont = Kernel::Font();
    requestedFont.SetPostscriptName(name);
    UpdateEffectiveFont(fontMap);
}

void InstallableFont::ReadDescriptor(Dictionary& dictionary)
{
    flags = 0;
    const Ref ref = dictionary.GetRef("FontDescriptor");
    if (ref.IsNull()) return;
    Dictionary descriptor(ref);
    missingWidth = descriptor.GetReal("MissingWidth", missingWidth);
    SetFlags(descriptor.GetInt("Flags", 0));
    if (descriptor.GetReal("ItalicAngle", 0) < -2) requestedFont.SetIsItalic(true);
    if (const Ref style = descriptor.GetRef("Style"); !style.IsNull()) ReadStyle(style);
}

void InstallableFont::ReadStyle(const Ref& ref)
{
    Dictionary style(ref);
    const std::vector<char>& bytes = style.GetStringBuf("Panose");
    // A family class of two bytes comes first.
    if (bytes.size() != 12) return;
    Kernel::Panose panose;
    panose.Set(reinterpret_cast<const unsigned char*>(bytes.data()) + 2, 10);
    requestedFont.SetPanose(panose);
}

void InstallableFont::SetFlags(int newFlags)
{
    flags = newFlags;
    if (flags & c_italic) requestedFont.SetIsItalic(true);
    if (flags & c_script) SetIsScript();
    if (flags & c_fixedPitch) SetIsMonospaced();
}

void InstallableFont::SetIsScript()
{
    if (requestedFont.panose.IsEmpty()) requestedFont.panose.SetKind(Kernel::Panose::LatinScript);
}

void InstallableFont::SetIsMonospaced()
{
    if (requestedFont.panose.IsAny(Kernel::Panose::c_proportion)) requestedFont.panose.SetIsMonospaced();
}

} // namespace Quillet
