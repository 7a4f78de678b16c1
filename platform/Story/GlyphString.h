#pragma once

#include <Story/Glyph.h>

#include <string>
#include <variant>
#include <vector>

namespace Story {

/// A short text of characters and glyphs, the marker of a list for instance.
class QUILLET_API GlyphString
{
public:
    using Item = std::variant<char32_t, Kernel::Counted<const Glyph>>;

    void AddChar32(char32_t character);
    /// Null is left out.
    void Add(Kernel::Counted<const Glyph> glyph);

    const std::vector<Item>& GetItems() const { return items; }
    /// In UTF-8, with `number` where the number of level 0 stands, and nothing for other glyphs.
    std::string GetText(const std::string& number) const;
    std::size_t GetHash() const;

    /// Glyphs are equal that stand for the same: two numbers of one level, for instance.
    friend QUILLET_API bool operator==(const GlyphString& a, const GlyphString& b);

private:
    std::vector<Item> items;
};

} // namespace Story
