#include "exporters/NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace Host {

namespace {

constexpr double c_powers[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

/// Numbers too large for the integer way, rare enough to take the slow one.
void AppendLargeNumber(std::string& text, double value, int decimals)
{
    char buffer[400];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals).ptr;
    std::string_view digits(buffer, static_cast<std::size_t>(end - buffer));
    if (digits.find('.') != digits.npos) {
        digits = digits.substr(0, digits.find_last_not_of('0') + 1);
        if (digits.back() == '.') digits.remove_suffix(1);
    }
    text += digits;
}

} // namespace

void AppendNumber(std::string& text, double value, int decimals)
{
    if (!std::isfinite(value)) value = 0;
    const double scaled = std::abs(value) * c_powers[decimals];
    if (!(scaled < 9e15)) {
        AppendLargeNumber(text, value, decimals);
        return;
    }
    auto integer = static_cast<unsigned long long>(scaled + 0.5);
    while (decimals > 0 && integer % 10 == 0) {
        integer /= 10;
        --decimals;
    }
    if (integer != 0 && value < 0) text += '-';
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, integer).ptr;
    const auto length = static_cast<int>(end - digits);
    const int whole = std::max(length - decimals, 0);
    text.append(digits, static_cast<std::size_t>(whole));
    if (whole == 0) text += '0';
    if (decimals == 0) return;
    text += '.';
    text.append(static_cast<std::size_t>(std::max(decimals - length, 0)), '0');
    text.append(digits + whole, end);
}

void AppendShortest(std::string& text, double value)
{
    const double size = std::abs(value);
    const bool isPlain = size == 0 || (size >= 1e-4 && size < 1e15);
    char buffer[32];
    const auto form = isPlain ? std::chars_format::fixed : std::chars_format::scientific;
    const std::string_view digits(buffer, std::to_chars(buffer, buffer + sizeof buffer, value, form).ptr);
    text += digits;
    if (isPlain && digits.find('.') == digits.npos) text += ".0";
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
