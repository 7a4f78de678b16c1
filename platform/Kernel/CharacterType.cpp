#include <Kernel/CharacterType.h>

#include <Kernel/CharTraits.h>

#include <unicode/uchar.h>

namespace Kernel {

namespace {

/// ICU's characters are signed; what is none is unassigned there.
UChar32 ToIcu(char32_t character)
{
    return character <= CharTraits::c_lastCodePoint ? static_cast<UChar32>(character) : U_SENTINEL;
}

} // namespace

UnicodeCharacterType GetUnicodeCharacterType(char32_t character) noexcept
{
    return static_cast<UnicodeCharacterType>(u_charType(ToIcu(character)));
}

bool IsSpace(char32_t character) noexcept
{
    // The property White_Space. u_isWhitespace would leave out the spaces that do not break.
    return u_isUWhiteSpace(ToIcu(character)) != 0;
}

bool IsLower(char32_t character) noexcept
{
    return u_isULowercase(ToIcu(character)) != 0;
}

bool IsGraphic(char32_t character) noexcept
{
    return u_isgraph(ToIcu(character)) != 0;
}

bool IsAlnum(char32_t character) noexcept
{
    return u_isalnum(ToIcu(character)) != 0;
}

} // namespace Kernel
