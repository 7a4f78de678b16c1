#include "fonts/GlyphNames.h"

#include "fonts/FontTables.h"

#include <Kernel/CharTraits.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <span>

namespace Quillet {

namespace {

std::optional<char32_t> Find(std::span<const GlyphListEntry> list, std::string_view name)
{
    const auto found =
        std::lower_bound(list.begin(), list.end(), name,
                         [](const GlyphListEntry& entry, std::string_view text) { return entry.name < text; });
    if (found == list.end() || found->name != name) return std::nullopt;
    return found->character;
}

/// The number that a text begins with.
bool AddNumber(std::string_view text, int base, CodeSequence& out)
{
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc() || value == 0 || !Kernel::CharTraits::IsScalarValue(value)) return false;
    out.Add(value);
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
            AddNumber(name.substr(i, 4), 16, out);
        return;
    }
    if (name.starts_with("u") && AddNumber(name.substr(1, 6), 16, out)) return;
    if (name.starts_with("MT")) AddNumber(name.substr(2), 10, out);
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
