#pragma once

#include <Kernel/Export.h>

#include <string>
#include <string_view>

namespace Story {

/// How a number in a list is written.
enum class NumberFormat : int {
    Decimal = 0,
    UpperRoman = 1,
    LowerRoman = 2,
    UpperLetter = 3,
    LowerLetter = 4,
};

/// What `text` means in a format; 0 for what is no number in it. Roman numerals are read digit by digit, a smaller one
/// before a larger one being taken away from it, so that "iiii" is 4 as "iv" is. Letters count on as "z", "aa", "ab".
/// What does not fit is the largest int.
QUILLET_API int ToInteger(NumberFormat format, std::u32string_view text);
/// How `value` is written, in ASCII; decimal where the format has no such number (below 1, and roman above 3999).
QUILLET_API std::string ToText(NumberFormat format, int value);

} // namespace Story
