#include "fonts/FontEncodingFactory.h"

#include "document/Dictionary.h"
#include "document/Limits.h"
#include "fonts/GlyphNames.h"

#include <Quillet/Budget.h>

#include <Kernel/UnicodeCmap.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <functional>
#include <limits>
#include <mutex>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace Quillet {

namespace {

using Encoding = FontEncodingFactory::Encoding;
using namespace FontEncodingType;

constexpr char32_t c_bullet = 0x2022;
constexpr int c_maxCode = 255;
/// Codes of WinAnsiEncoding from here on that have no glyph show a bullet (ISO 32000-2, D.2, note 3).
constexpr int c_firstBullet = 40;

/// Second codes of a glyph, which stand in the notes to the table (ISO 32000-2, D.2).
struct SecondCode
{
    int column;
    unsigned char code;
    const char* name;
};

constexpr SecondCode c_secondCodes[] = {{LatinEncoding::c_winAnsi, 160, "space"},
                                        {LatinEncoding::c_winAnsi, 173, "hyphen"},
                                        {LatinEncoding::c_macRoman, 202, "space"}};

/// Calls `visit` with each code and glyph name of a column of the Latin table.
template <typename Visit>
void VisitLatin(int column, Visit visit)
{
    for (const LatinEncoding& row : c_latinEncodings) {
        if (row.codes[column] != 0) visit(row.codes[column], row.name);
    }
    for (const SecondCode& second : c_secondCodes) {
        if (second.column == column) visit(second.code, second.name);
    }
}

template <typename Visit>
void VisitSingle(std::span<const SingleEncoding> rows, Visit visit)
{
    for (const SingleEncoding& row : rows) {
        if (row.code != 0) visit(row.code, row.name);
    }
}

Encoding MakeIdentity()
{
    auto encoding = Kernel::MakeCounted<FontEncoding>("Identity");
    encoding->AddByteCodeSpaceRange();
    encoding->AddMapRange(0, c_maxCode, char32_t{0});
    encoding->AddMap('\t', U' ');
    encoding->OnComplete();
    return encoding;
}

/// The code of a glyph in one of the encodings with a table; 0 for none.
int FindCode(Type type, const std::string& name)
{
    const auto findSingle = [&name](std::span<const SingleEncoding> rows) -> int {
        const auto found = std::ranges::find_if(rows, [&name](const SingleEncoding& row) { return name == row.name; });
        return found == rows.end() ? 0 : found->code;
    };
    switch (type) {
    case FontEncodingIdentity:
        return 0;
    case FontEncodingMacExpert:
        return findSingle(c_macExpertEncoding);
    case FontEncodingSymbol:
        return findSingle(c_symbolEncoding);
    case FontEncodingZapfDingbats:
        return findSingle(c_zapfDingbatsEncoding);
    case FontEncodingStandard:
    case FontEncodingMacRoman:
    case FontEncodingWinAnsi:
        break;
    }
    const auto found =
        std::ranges::find_if(c_latinEncodings, [&name](const LatinEncoding& row) { return name == row.name; });
    return found == c_latinEncodings.end() ? 0 : found->codes[type - FontEncodingStandard];
}

/// The glyph of each code; null where there is none.
using GlyphNames = std::array<const char*, c_maxCode + 1>;

GlyphNames GetGlyphNames(Type type)
{
    GlyphNames names{};
    const auto set = [&names](int code, const char* name) { names[static_cast<std::size_t>(code)] = name; };
    switch (type) {
    case FontEncodingIdentity:
        break;
    case FontEncodingWinAnsi:
        std::fill(names.begin() + c_firstBullet, names.end(), "bullet");
        [[fallthrough]];
    case FontEncodingStandard:
    case FontEncodingMacRoman:
        VisitLatin(type - FontEncodingStandard, set);
        break;
    case FontEncodingMacExpert:
        VisitSingle(c_macExpertEncoding, set);
        break;
    case FontEncodingSymbol:
        VisitSingle(c_symbolEncoding, set);
        break;
    case FontEncodingZapfDingbats:
        VisitSingle(c_zapfDingbatsEncoding, set);
        break;
    }
    return names;
}

/// Takes the widths of a standard font by the codes of its own encoding and leaves them by those of another. A code
/// whose glyph the font lacks keeps the width that it has in the font's own.
void OrderWidths(std::vector<double>& widths, Type type, const StandardFontMetrics& metrics)
{
    if (type == FontEncodingIdentity || type == FontEncodingFactory::GetDefaultId(metrics.name, false)) return;
    std::unordered_map<std::string_view, double> byName;
    for (const StandardGlyph& glyph : metrics.glyphs)
        byName.emplace(glyph.name, glyph.width);
    const GlyphNames names = GetGlyphNames(type);
    widths.resize(std::max(widths.size(), names.size()));
    for (std::size_t code = 0; code < names.size(); ++code) {
        if (!names[code]) continue;
        if (const auto found = byName.find(names[code]); found != byName.end()) widths[code] = found->second;
    }
}

/// Calls `visit` with each code and name of a "Differences" array; false if there is none.
bool VisitDifferences(Dictionary& dictionary, const std::function<void(long long code, const std::string& name)>& visit)
{
    const Kernel::Counted<Parser> parser = dictionary.OpenValue("Differences");
    if (!parser || parser->tokenType != Token::TokenArrayStart) return false;
    long long code = 0;
    while (parser->NextToken() != Token::TokenArrayEnd && parser->tokenType != Token::TokenEnd) {
        if (parser->tokenType == Token::TokenInt) {
            code = parser->tokenInt;
            continue;
        }
        if (!Budget::Spend(Limits::c_glyphNameUnits)) break;
        visit(code, parser->GetTokenName());
        if (code < std::numeric_limits<int>::max()) ++code;
    }
    return true;
}

Kernel::Counted<Dictionary> MakeDictionary(const Ref& ref)
{
    return Kernel::MakeCounted<Dictionary>(ref, "Encoding", Error::General);
}

Type GetBaseId(Dictionary& dictionary, const std::string& fontName, bool isSymbolic)
{
    if (!dictionary.Has("BaseEncoding")) return FontEncodingFactory::GetDefaultId(fontName, isSymbolic);
    return FontEncodingFactory::GetNamedId(dictionary.GetName("BaseEncoding"), fontName, isSymbolic);
}

} // namespace

Kernel::Counted<FontEncoding> MakeLatinTable(const char* name, int column)
{
    auto encoding = Kernel::MakeCounted<FontEncoding>(name);
    encoding->AddByteCodeSpaceRange();
    VisitLatin(column,
               [&](int code, const char* glyph) { encoding->AddMap(code, GetUnicodeFromAdobeName(glyph, false)); });
    if (column == LatinEncoding::c_winAnsi) encoding->AddUndefinedMaps(c_firstBullet, c_maxCode, c_bullet);
    encoding->OnComplete();
    return encoding;
}

Kernel::Counted<FontEncoding> MakeSingleTable(const char* name, std::span<const SingleEncoding> rows)
{
    auto encoding = Kernel::MakeCounted<FontEncoding>(name);
    encoding->AddByteCodeSpaceRange();
    const bool isZapfDingbats = std::string_view(name) == "ZapfDingbats";
    VisitSingle(rows, [&](int code, const char* glyph) {
        encoding->AddMap(code, GetUnicodeFromAdobeName(glyph, isZapfDingbats));
    });
    encoding->OnComplete();
    return encoding;
}

Encoding MakeTable(Type type)
{
    switch (type) {
    case FontEncodingIdentity:
        return MakeIdentity();
    case FontEncodingStandard:
        return MakeLatinTable("StandardEncoding", LatinEncoding::c_standard);
    case FontEncodingMacRoman:
        return MakeLatinTable("MacRomanEncoding", LatinEncoding::c_macRoman);
    case FontEncodingWinAnsi:
        return MakeLatinTable("WinAnsiEncoding", LatinEncoding::c_winAnsi);
    case FontEncodingMacExpert:
        return MakeSingleTable("MacExpertEncoding", c_macExpertEncoding);
    case FontEncodingSymbol:
        return MakeSingleTable("Symbol", c_symbolEncoding);
    case FontEncodingZapfDingbats:
        return MakeSingleTable("ZapfDingbats", c_zapfDingbatsEncoding);
    }
    return nullptr;
}

Encoding FontEncodingFactory::Get(Type type)
{
    struct Table
    {
        std::once_flag once;
        Encoding encoding;
    };
    static auto& tables = *new std::array<Table, 7>;
    Table& table = tables.at(static_cast<std::size_t>(type));
    std::call_once(table.once, [&] {
        const Budget::Reprieve reprieve;
        table.encoding = MakeTable(type);
    });
    return table.encoding;
}

Type FontEncodingFactory::GetNamedId(const std::string& encodingName, const std::string& fontName, bool isSymbolic)
{
    constexpr std::pair<const char*, Type> c_names[] = {{"MacRomanEncoding", FontEncodingMacRoman},
                                                        {"WinAnsiEncoding", FontEncodingWinAnsi},
                                                        {"MacExpertEncoding", FontEncodingMacExpert},
                                                        {"Symbol", FontEncodingSymbol},
                                                        {"ZapfDingbats", FontEncodingZapfDingbats}};
    for (const auto& [name, type] : c_names) {
        if (encodingName == name) return type;
    }
    // "StandardEncoding" comes this way too, and is the font's own for a symbolic one.
    return GetDefaultId(fontName, isSymbolic);
}

Encoding FontEncodingFactory::GetNamed(const std::string& encodingName, const std::string& fontName, bool isSymbolic)
{
    return Get(GetNamedId(encodingName, fontName, isSymbolic));
}

Type FontEncodingFactory::GetDefaultId(const std::string& fontName, bool isSymbolic)
{
    if (fontName == "Symbol") return FontEncodingSymbol;
    if (fontName == "ZapfDingbats") return FontEncodingZapfDingbats;
    return isSymbolic ? FontEncodingIdentity : FontEncodingStandard;
}

Encoding FontEncodingFactory::GetDefault(const std::string& fontName, bool isSymbolic)
{
    return Get(GetDefaultId(fontName, isSymbolic));
}

Encoding FontEncodingFactory::GetType1(const Ref& ref, const std::string& fontName, bool isSymbolic,
                                       const Kernel::Font& font)
{
    const auto dictionary = MakeDictionary(ref);
    const Encoding base = Get(GetBaseId(*dictionary, fontName, isSymbolic));
    auto result = Kernel::MakeCounted<FontEncoding>(*base);
    result->SetErrorHandler(ref.GetErrorHandler());
    Encoding cache;
    const bool hasDifferences = VisitDifferences(*dictionary, [&](long long code, const std::string& name) {
        if (code > c_maxCode) return;
        char32_t character = GetUnicodeFromAdobeName(name, fontName == "ZapfDingbats");
        if (character == 0) character = GetUnicodeFromGlyphIndex(name, font, &cache);
        if (character == 0) {
            ref.OnError(Error::UnimplementedTextEncoding);
        } else {
            result->AddMap(static_cast<int>(std::max<long long>(code, std::numeric_limits<int>::min())), character);
        }
    });
    if (!hasDifferences) return base;
    result->OnComplete();
    return result;
}

Encoding FontEncodingFactory::GetType1Encoding(const Ref& ref, const std::string& fontName, bool isSymbolic,
                                               bool noDefault)
{
    const auto dictionary = MakeDictionary(ref);
    if (dictionary->Has("BaseEncoding"))
        return Get(GetNamedId(dictionary->GetName("BaseEncoding"), fontName, isSymbolic));
    if (noDefault || isSymbolic) return nullptr;
    return Get(GetDefaultId(fontName, false));
}

Kernel::Counted<const FontEncodingDifferences> FontEncodingFactory::GetType1Differences(const Ref& ref)
{
    const auto dictionary = MakeDictionary(ref);
    auto differences = Kernel::MakeCounted<FontEncodingDifferences>();
    const bool isThere = VisitDifferences(*dictionary, [&](long long code, const std::string& name) {
        if (differences->names.size() >= Limits::c_maxFontCodes) return;
        if (code >= std::numeric_limits<int>::min() && code <= std::numeric_limits<int>::max())
            differences->Add(static_cast<int>(code), name);
    });
    if (!isThere && !dictionary->Has("Differences")) return nullptr;
    return differences;
}

void FontEncodingFactory::ApplyEncodingToWidths(std::vector<double>& widths, const Ref& ref,
                                                const std::string& fontName, bool isSymbolic)
{
    const auto dictionary = MakeDictionary(ref);
    const Type base = GetBaseId(*dictionary, fontName, isSymbolic);
    const StandardFontMetrics* metrics = GetStandardFontMetrics(fontName);
    if (metrics) OrderWidths(widths, base, *metrics);
    std::vector<double> result = widths;
    const bool hasDifferences = VisitDifferences(*dictionary, [&](long long code, const std::string& name) {
        if (code < 0 || code > c_maxCode) return;
        const auto place = static_cast<std::size_t>(code);
        if (result.size() <= place) result.resize(place + 1);
        const auto known = static_cast<std::size_t>(FindCode(base, name));
        if (known != 0 && known < widths.size()) {
            result[place] = widths[known];
            return;
        }
        if (!metrics) return;
        const auto glyph =
            std::ranges::find_if(metrics->glyphs, [&name](const StandardGlyph& row) { return name == row.name; });
        if (glyph != metrics->glyphs.end()) result[place] = glyph->width;
    });
    if (hasDifferences) widths = std::move(result);
}

void FontEncodingFactory::ApplyNamedEncodingToWidths(std::vector<double>& widths, const std::string& encodingName,
                                                     const std::string& fontName, bool isSymbolic)
{
    const StandardFontMetrics* metrics = GetStandardFontMetrics(fontName);
    if (metrics) OrderWidths(widths, GetNamedId(encodingName, fontName, isSymbolic), *metrics);
}

namespace {

Encoding ReadFromOs(const Kernel::Font& font)
{
    const Budget::Reprieve reprieve;
    const auto cmap = Kernel::UnicodeCmap::Make(font);
    if (!cmap) return nullptr;
    auto encoding = Kernel::MakeCounted<FontEncoding>();
    encoding->AddCodeSpaceRange(2, 0, 0, 0xFFFF);
    for (const Kernel::UnicodeCmap::Range& range : cmap->GetRanges()) {
        for (char32_t character = range.first; character <= range.last; ++character) {
            const int glyph = cmap->GetGlyphIndex(character);
            // A glyph with several characters is the first of them: a space before a no-break space.
            if (glyph != 0 && !encoding->ContainsMappingFor(glyph)) encoding->AddMap(glyph, character);
        }
    }
    encoding->OnComplete();
    return encoding;
}

unsigned long long CountCodes(const Encoding& encoding)
{
    unsigned long long count = 0;
    if (!encoding) return count;
    for (const auto& [first, range] : encoding->mapRanges)
        count += static_cast<unsigned long long>(range.last - first) + 1;
    return count;
}

} // namespace

Encoding FontEncodingFactory::GetFromOs(const Kernel::Font& font)
{
    // Documents embed one font of the machine in many subsets; each encoding can take some megabytes.
    constexpr std::size_t c_maxKept = 8;
    static std::mutex mutex;
    static auto& recent = *new std::vector<std::pair<Kernel::Font, Encoding>>;
    const std::lock_guard lock(mutex);
    const auto found = std::ranges::find(recent, font, &std::pair<Kernel::Font, Encoding>::first);
    if (found != recent.end()) {
        std::rotate(recent.begin(), found, found + 1);
    } else {
        if (recent.size() == c_maxKept) recent.pop_back();
        recent.insert(recent.begin(), {font, ReadFromOs(font)});
        // It is whole in any case, but whoever asks for one after the other pays.
        Budget::Spend(Limits::c_entryUnits * CountCodes(recent.front().second));
    }
    return recent.front().second;
}

char32_t FontEncodingFactory::GetUnicodeFromGlyphIndex(const std::string& glyphName, const Kernel::Font& font,
                                                       Encoding* cache)
{
    if (font.IsEmpty() || glyphName.size() < 2 || glyphName[0] != 'g') return 0;
    const char* first = glyphName.data() + 1;
    int index = 0;
    const auto [last, error] = std::from_chars(first, glyphName.data() + glyphName.size(), index, 16);
    if (error != std::errc() || last == first || index < 0) return 0;
    if (!*cache) *cache = GetFromOs(font);
    if (!*cache) return 0;
    const CodeSequence sequence = (*cache)->GetMappedSequence(index);
    return sequence.count > 0 ? sequence.values[0] : 0;
}

} // namespace Quillet
