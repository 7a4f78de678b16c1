#include "fonts/GlyphNames.h"

#include "fonts/FontTables.h"

#include <algorithm>
#include <optional>
#include <span>

namespace Quillet {

namespace {

bool IsValid(unsigned long value)
{
    return value != 0 && (value < 0xD800 || (value >= 0xE000 && value <= 0x10FFFF));
}

std::optional<char32_t> Find(std::span<const GlyphListEntry> list, std::string_view name)
{
    const auto found =
        std::lower_bound(list.begin(), list.end(), name,
                         [](const GlyphListEntry& entry, std::string_view text) { return entry.name < text; });
    if (found == list.end() || found->name != name) return std::nullopt;
    return found->character;
}

int GetDigit(char c, int base)
{
    const int value = c >= '0' && c <= '9'   ? c - '0'
                      : c >= 'a' && c <= 'f' ? c - 'a' + 10
                      : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                             : 99;
    return value < base ? value : -1;
}

/// The number that a text begins with, of at most `maxDigits`; nothing for a text that begins with none. Too large a
/// number for a character stays one.
std::optional<unsigned long> ReadNumber(std::string_view text, int base, std::size_t maxDigits)
{
    constexpr unsigned long c_tooLarge = 0x1000000;
    unsigned long value = 0;
    std::size_t count = 0;
    for (; count < std::min(text.size(), maxDigits); ++count) {
        const int digit = GetDigit(text[count], base);
        if (digit < 0) break;
        value = std::min(value * static_cast<unsigned long>(base) + static_cast<unsigned long>(digit), c_tooLarge);
    }
    if (count == 0) return std::nullopt;
    return value;
}

bool AddNumber(std::string_view text, int base, std::size_t maxDigits, CodeSequence& out)
{
    const auto value = ReadNumber(text, base, maxDigits);
    if (!value || !IsValid(*value)) return false;
    out.Add(static_cast<char32_t>(*value));
    return true;
}

void AddComponent(std::string_view name, bool isZapfDingbats, CodeSequence& out)
{
    std::optional<char32_t> listed;
    if (isZapfDingbats) listed = Find(c_zapfDingbatsList, name);
    if (!listed) listed = Find(c_glyphList, name);
    if (listed) {
        out.Add(*listed);
        return;
    }
    if (name.starts_with("uni") && name.size() % 4 == 3 && name.size() > 3) {
        for (std::size_t i = 3; i < name.size(); i += 4)
            AddNumber(name.substr(i, 4), 16, 4, out);
        return;
    }
    if (name.starts_with("u") && AddNumber(name.substr(1), 16, 6, out)) return;
    if (name.starts_with("MT")) AddNumber(name.substr(2), 10, name.size(), out);
}

} // namespace

void GetUnicodeSequenceFromAdobeName(std::string_view name, bool isZapfDingbats, CodeSequence& out)
{
    name = name.substr(0, name.find('.'));
    for (std::size_t start = 0; start <= name.size();) {
        const std::size_t end = std::min(name.find('_', start), name.size());
        AddComponent(name.substr(start, end - start), isZapfDingbats, out);
        start = end + 1;
    }
}

char32_t GetUnicodeFromAdobeName(std::string_view name, bool isZapfDingbats)
{
    CodeSequence sequence;
    GetUnicodeSequenceFromAdobeName(name, isZapfDingbats, sequence);
    return sequence.count > 0 ? sequence.values[0] : 0;
}

std::string GetGlyphNameFromUnicode(char32_t character)
{
    const auto found = std::ranges::find(c_glyphList, character, &GlyphListEntry::character);
    return found == c_glyphList.end() ? std::string() : std::string(found->name);
}

} // namespace Quillet
