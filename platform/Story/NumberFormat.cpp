#include <Story/NumberFormat.h>

#include <algorithm>
#include <iterator>
#include <limits>

namespace Story {

namespace {

constexpr int c_largest = std::numeric_limits<int>::max();
constexpr int c_largestRoman = 3999;

struct RomanPart
{
    std::string_view text;
    int value;
};

constexpr RomanPart c_romanParts[] = {{"m", 1000}, {"cm", 900}, {"d", 500}, {"cd", 400}, {"c", 100},
                                      {"xc", 90},  {"l", 50},   {"xl", 40}, {"x", 10},   {"ix", 9},
                                      {"v", 5},    {"iv", 4},   {"i", 1}};

bool IsUpper(NumberFormat format)
{
    return format == NumberFormat::UpperRoman || format == NumberFormat::UpperLetter;
}

bool IsRoman(NumberFormat format)
{
    return format == NumberFormat::UpperRoman || format == NumberFormat::LowerRoman;
}

/// As a lower-case letter; 0 for what is no letter of the format's case.
char FoldLetter(NumberFormat format, char32_t letter)
{
    const char32_t first = IsUpper(format) ? U'A' : U'a';
    return letter >= first && letter < first + 26 ? static_cast<char>('a' + (letter - first)) : '\0';
}

int GetRomanDigit(NumberFormat format, char32_t letter)
{
    const std::string digit(1, FoldLetter(format, letter));
    const auto* const found = std::ranges::find(c_romanParts, digit, &RomanPart::text);
    return found == std::end(c_romanParts) ? 0 : found->value;
}

int ReadRoman(NumberFormat format, std::u32string_view text)
{
    long long value = 0;
    int next = 0;
    for (auto letter = text.rbegin(); letter != text.rend(); ++letter) {
        const int digit = GetRomanDigit(format, *letter);
        if (digit == 0) return 0;
        value += digit < next ? -digit : digit;
        next = digit;
    }
    return static_cast<int>(std::min<long long>(value, c_largest));
}

/// In a notation by places; what `getDigit` gives a negative number for is no digit.
template <typename GetDigit>
int ReadPlaces(std::u32string_view text, int base, const GetDigit& getDigit)
{
    long long value = 0;
    for (const char32_t c : text) {
        const int digit = getDigit(c);
        if (digit < 0) return 0;
        value = std::min<long long>(value * base + digit, c_largest);
    }
    return static_cast<int>(value);
}

std::string WriteRoman(int value)
{
    std::string text;
    for (const RomanPart& part : c_romanParts) {
        for (; value >= part.value; value -= part.value)
            text += part.text;
    }
    return text;
}

std::string WriteLetters(int value)
{
    std::string text;
    for (; value > 0; value = (value - 1) / 26)
        text.insert(text.begin(), static_cast<char>('a' + (value - 1) % 26));
    return text;
}

} // namespace

int ToInteger(NumberFormat format, std::u32string_view text)
{
    if (IsRoman(format)) return ReadRoman(format, text);
    if (format == NumberFormat::Decimal)
        return ReadPlaces(text, 10,
                          [](char32_t c) { return c >= U'0' && c <= U'9' ? static_cast<int>(c - U'0') : -1; });
    return ReadPlaces(text, 26, [format](char32_t c) {
        const char letter = FoldLetter(format, c);
        return letter == 0 ? -1 : letter - 'a' + 1;
    });
}

std::string ToText(NumberFormat format, int value)
{
    if (format == NumberFormat::Decimal || value < 1 || (IsRoman(format) && value > c_largestRoman))
        return std::to_string(value);
    std::string text = IsRoman(format) ? WriteRoman(value) : WriteLetters(value);
    if (IsUpper(format))
        std::ranges::transform(text, text.begin(), [](char c) { return static_cast<char>(c - 'a' + 'A'); });
    return text;
}

} // namespace Story
