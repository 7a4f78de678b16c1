#pragma once

#include <Kernel/Export.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace Kernel {

/// What is true of UTF-8 and UTF-16 as such, whatever the text.
class QUILLET_API CharTraits
{
public:
    /// U+FFFD: stands for bytes that are no character.
    static constexpr char32_t c_replacement = 0xFFFD;
    static constexpr char32_t c_lastCodePoint = 0x10FFFF;

    /// Length in bytes of the longest prefix that is valid UTF-8: no overlong forms, no surrogates, nothing above
    /// U+10FFFF, no cut sequence. `size` if all is valid.
    static std::size_t GetValidLength(const char* text, std::size_t size) noexcept;

    /// Whether fonts give the character a whole em: ideographs, kana, syllables, and the forms made to go with them
    /// (Unicode Standard Annex 11).
    static bool IsWide(char32_t character) noexcept;

    /// Whether `value` may stand alone in a text: in range, and no surrogate.
    static constexpr bool IsScalarValue(char32_t value) noexcept
    {
        return value <= c_lastCodePoint && (value & ~0x7FFu) != 0xD800;
    }

    /// Joins a surrogate pair. Only the low ten bits of each half count, so any two values give one from U+10000 to
    /// U+10FFFF.
    static constexpr char32_t MakeCodePoint(char32_t high, char32_t low) noexcept
    {
        return 0x10000 + ((high & 0x3FF) << 10) + (low & 0x3FF);
    }

    /// Appends one code point; what is none (a surrogate, a value out of range) becomes U+FFFD.
    static void AppendCodePoint(std::string& text, char32_t codePoint);

    /// The code point at byte `position`, which moves behind it; `position` lies inside `text`. A broken sequence gives
    /// U+FFFD and is left behind up to the first byte that cannot belong to it, so the call always moves on.
    static char32_t DecodeCodePoint(std::string_view text, std::size_t& position) noexcept;

    /// A lone surrogate becomes U+FFFD.
    static std::string ToUtf8(std::u16string_view text);
};

} // namespace Kernel
