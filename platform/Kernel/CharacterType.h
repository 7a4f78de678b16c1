#pragma once

#include <Kernel/Export.h>

namespace Kernel {

/// General categories of the Unicode Standard (4.5), by the numbers that ICU gives them. Those that nobody asks for by
/// name are not listed.
enum class UnicodeCharacterType : int {
    Unassigned = 0,
    Control = 15,
    OtherPunctuation = 23,
    OtherSymbol = 27,
};

QUILLET_API UnicodeCharacterType GetUnicodeCharacterType(char32_t character) noexcept;
/// White space and separators, those that do not break included.
QUILLET_API bool IsSpace(char32_t character) noexcept;
QUILLET_API bool IsLower(char32_t character) noexcept;
/// What leaves ink: no space, no control and nothing unassigned.
QUILLET_API bool IsGraphic(char32_t character) noexcept;
/// Letters and digits of any script.
QUILLET_API bool IsAlnum(char32_t character) noexcept;

} // namespace Kernel
