#include "text/ListAtt.h"

#include <Kernel/CharacterType.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <string>
#include <string_view>

namespace Quillet {

using Story::ListType;
using Story::NumberFormat;

namespace {

constexpr std::u32string_view c_openBrackets = U"(<[{";
constexpr std::u32string_view c_suffixes = U").>]}";
constexpr std::u32string_view c_romanDigits = U"ivxlcdmIVXLCDM";
/// Longer than any roman number that a list gets to.
constexpr std::ptrdiff_t c_maxRomanDigits = 9;
constexpr std::ptrdiff_t c_minBulletLine = 3;
constexpr int c_noValue = std::numeric_limits<int>::min();

/// The letters, by their places in the alphabet, that are roman digits too.
constexpr struct
{
    int letter;
    int roman;
} c_latinToRoman[] = {{9, 1}, {22, 5}, {24, 10}, {12, 50}, {3, 100}, {4, 500}, {13, 1000}};

bool IsBlank(const Char& c)
{
    return c.isSpace || Kernel::IsSpace(c.unicode);
}

bool IsOneOf(const Char& c, std::u32string_view characters)
{
    return c.unicode != 0 && characters.find(c.unicode) != std::u32string_view::npos;
}

bool IsBetween(char32_t c, char32_t first, char32_t last)
{
    return c >= first && c <= last;
}

bool IsDigit(const Char& c)
{
    return IsBetween(c.unicode, U'0', U'9');
}

bool IsRoman(NumberFormat format)
{
    return format == NumberFormat::UpperRoman || format == NumberFormat::LowerRoman;
}

bool IsLetter(NumberFormat format)
{
    return format == NumberFormat::UpperLetter || format == NumberFormat::LowerLetter;
}

} // namespace

ListAtt::ListAtt(Iterator first, Iterator last)
{
    if (ParseBullet(first, last) || ParseNumber(first, last)) {
        ParseDelta(first, last);
        return;
    }
    prefix = suffix = 0;
    value = 0;
    format = NumberFormat::Decimal;
}

bool ListAtt::ParseBullet(Iterator first, Iterator last)
{
    using Kernel::UnicodeCharacterType;
    if (last - first < c_minBulletLine || !IsBlank(first[1])) return false;
    if (first->unicode == 0) return false; // Not known, so that nobody could write it.
    const UnicodeCharacterType kind = Kernel::GetUnicodeCharacterType(first->unicode);
    if (kind != UnicodeCharacterType::Control && kind != UnicodeCharacterType::OtherPunctuation &&
        kind != UnicodeCharacterType::OtherSymbol) {
        return false;
    }
    type = ListType::Bullet;
    prefix = first->unicode;
    charCount = 2;
    return true;
}

bool ListAtt::ParseNumber(Iterator first, Iterator last)
{
    auto c = first;
    if (c != last && IsOneOf(*c, c_openBrackets)) prefix = (c++)->unicode;
    if (c == last) return false;
    c = ParseFormat(c, last);
    if (c != last && IsOneOf(*c, c_suffixes)) suffix = (c++)->unicode;
    if (c == last || !IsBlank(*c)) return false;
    // A word is no number.
    if (format != NumberFormat::Decimal && suffix == 0) return false;
    type = ListType::Number;
    charCount = static_cast<int>(c + 1 - first);
    return true;
}

ListAtt::Iterator ListAtt::ParseFormat(Iterator first, Iterator last)
{
    const char32_t code = first->unicode;
    if (IsDigit(*first)) {
        format = NumberFormat::Decimal;
        const auto end = std::find_if_not(first, last, IsDigit);
        std::u32string digits;
        std::transform(first, end, std::back_inserter(digits), [](const Char& c) { return c.unicode; });
        value = Story::ToInteger(format, digits);
        return end;
    }
    if (IsOneOf(*first, c_romanDigits)) {
        format = Kernel::IsLower(code) ? NumberFormat::LowerRoman : NumberFormat::UpperRoman;
        const auto end = std::find_if_not(first, first + std::min(last - first, c_maxRomanDigits),
                                          [](const Char& c) { return IsOneOf(c, c_romanDigits); });
        std::u32string digits;
        std::transform(first, end, std::back_inserter(digits), [](const Char& c) { return c.unicode; });
        value = Story::ToInteger(format, digits);
        return value > 0 ? end : last;
    }
    const bool isUpper = IsBetween(code, U'A', U'Z');
    if (!isUpper && !IsBetween(code, U'a', U'z')) return last;
    format = isUpper ? NumberFormat::UpperLetter : NumberFormat::LowerLetter;
    value = static_cast<int>(code - (isUpper ? U'A' : U'a')) + 1;
    return first + 1;
}

void ListAtt::ParseDelta(Iterator first, Iterator last)
{
    if (last - first <= charCount) return;
    const auto made = Story::MakeLocalGlyphFormatting(first->atts, first[charCount].atts, true);
    // How far letters were moved apart is the work of the line, not of its author.
    Story::MutableDeltaVisitor(*made).Visit(Story::GlyphAtt::LetterSpacing);
    if (!made->IsEmpty()) delta = made;
}

bool ListAtt::IsUpper() const
{
    return type == ListType::Number && (format == NumberFormat::UpperRoman || format == NumberFormat::UpperLetter);
}

int ListAtt::GetEffectiveValue(NumberFormat other) const
{
    if (other == format) return value;
    for (const auto& pair : c_latinToRoman) {
        if (IsRoman(format) && IsLetter(other) && pair.roman == value) return pair.letter;
        if (IsLetter(format) && IsRoman(other) && pair.letter == value) return pair.roman;
    }
    return c_noValue;
}

bool ListAtt::IsCompatible(const ListAtt& other) const
{
    if (type != other.type || prefix != other.prefix || suffix != other.suffix) return false;
    if (type == ListType::Number) {
        if (IsUpper() != other.IsUpper()) return false;
        const bool isNext = GetEffectiveValue(other.format) == static_cast<long long>(other.value) + 1 ||
                            other.GetEffectiveValue(format) == static_cast<long long>(value) - 1;
        if (!isNext) return false;
    }
    return delta && other.delta ? *delta == *other.delta : !delta && !other.delta;
}

} // namespace Quillet
