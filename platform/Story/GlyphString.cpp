#include <Story/GlyphString.h>

#include <Kernel/CharTraits.h>
#include <Kernel/HashAccumulator.h>

#include <algorithm>
#include <cstdint>
#include <tuple>

namespace Story {

namespace {

/// What an item stands for. A glyph of a kind that is not known here stands for itself alone.
std::tuple<int, std::uintptr_t> KeyOf(const GlyphString::Item& item)
{
    const auto make = [](int kind, auto value) { return std::tuple(kind, static_cast<std::uintptr_t>(value)); };
    if (const auto* character = std::get_if<char32_t>(&item)) return make(0, *character);
    const Glyph* glyph = std::get<1>(item).Get();
    if (const auto* number = dynamic_cast<const ListNumberGlyph*>(glyph)) return make(1, number->level);
    if (const auto* end = dynamic_cast<const HardBreakGlyph*>(glyph)) return make(2, end->type);
    return {3, reinterpret_cast<std::uintptr_t>(glyph)};
}

} // namespace

void GlyphString::AddChar32(char32_t character)
{
    items.emplace_back(character);
}

void GlyphString::Add(Kernel::Counted<const Glyph> glyph)
{
    if (glyph) items.emplace_back(std::move(glyph));
}

std::string GlyphString::GetText(const std::string& number) const
{
    std::string text;
    for (const Item& item : items) {
        if (const auto* character = std::get_if<char32_t>(&item)) {
            Kernel::CharTraits::AppendCodePoint(text, *character);
        } else if (const auto* glyph = dynamic_cast<const ListNumberGlyph*>(std::get<1>(item).Get())) {
            if (glyph->level == 0) text += number;
        }
    }
    return text;
}

std::size_t GlyphString::GetHash() const
{
    std::size_t hash = Kernel::GetHashSeed();
    for (const Item& item : items) {
        const auto [kind, value] = KeyOf(item);
        Kernel::AddToHash(hash, kind);
        Kernel::AddToHash(hash, value);
    }
    return hash;
}

bool operator==(const GlyphString& a, const GlyphString& b)
{
    return std::ranges::equal(a.items, b.items, {}, KeyOf, KeyOf);
}

} // namespace Story
