#include "exporters/NumberText.h"

#include "exporters/LongText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace Host {

namespace {

constexpr double c_powers[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

/// Room for any number at 15 decimals.
constexpr std::size_t c_numberSize = 400;
static_assert(c_numberSize <= LongText::c_pieceSize);

/// Numbers too large for the integer way, rare enough to take the slow one.
char* WriteLargeNumber(char* to, double value, int decimals)
{
    char* end = std::to_chars(to, to + c_numberSize, value, std::chars_format::fixed, decimals).ptr;
    if (std::find(to, end, '.') == end) return end;
    while (end[-1] == '0')
        --end;
    return end[-1] == '.' ? end - 1 : end;
}

/// Gives the end.
char* WriteNumber(char* to, double value, int decimals)
{
    if (!std::isfinite(value)) value = 0;
    const double scaled = std::abs(value) * c_powers[decimals];
    if (!(scaled < 9e15)) return WriteLargeNumber(to, value, decimals);
    auto integer = static_cast<unsigned long long>(scaled + 0.5);
    while (decimals > 0 && integer % 10 == 0) {
        integer /= 10;
        --decimals;
    }
    if (integer != 0 && value < 0) *to++ = '-';
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, integer).ptr;
    const auto length = static_cast<int>(end - digits);
    const int whole = std::max(length - decimals, 0);
    if (whole == 0) *to++ = '0';
    to = std::copy_n(digits, whole, to);
    if (decimals == 0) return to;
    *to++ = '.';
    to = std::fill_n(to, std::max(decimals - length, 0), '0');
    return std::copy(digits + whole, end, to);
}

} // namespace

void AppendNumber(std::string& text, double value, int decimals)
{
    char buffer[c_numberSize];
    text.append(buffer, WriteNumber(buffer, value, decimals));
}

void AppendNumber(LongText& text, double value, int decimals)
{
    text.EndPiece(WriteNumber(text.BeginPiece(), value, decimals));
}

void AppendShortest(LongText& text, double value)
{
    const double size = std::abs(value);
    const bool isPlain = size == 0 || (size >= 1e-4 && size < 1e15);
    const auto form = isPlain ? std::chars_format::fixed : std::chars_format::scientific;
    char* const begin = text.BeginPiece();
    char* end = std::to_chars(begin, begin + LongText::c_pieceSize, value, form).ptr;
    if (isPlain && std::find(begin, end, '.') == end) end = std::copy_n(".0", 2, end);
    text.EndPiece(end);
}

int GetDecimals(double scale, double resolution)
{
    if (!(scale > 0) || !std::isfinite(scale)) return 6;
    return static_cast<int>(std::clamp(std::ceil(std::log10(scale / resolution)), 0.0, 15.0));
}

double Tidy(double value)
{
    if (!std::isfinite(value)) return 0;
    if (std::abs(value) < 1e-3 || std::abs(value) > 1e9) return value + 0.0;
    return std::nearbyint(value * 1e6) / 1e6;
}

} // namespace Host
