#include <Kernel/NumberText.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace Kernel {

namespace {

constexpr std::string_view c_whiteSpace = " \t\n\v\f\r";
constexpr std::string_view c_digits = "0123456789";

/// What stands before the digits: white space, then perhaps a sign.
struct Prefix
{
    std::size_t length;
    bool isNegative;
};

Prefix ReadPrefix(std::string_view text)
{
    const std::size_t start = std::min(text.find_first_not_of(c_whiteSpace), text.size());
    const bool isNegative = text.substr(start).starts_with('-');
    const bool hasSign = isNegative || text.substr(start).starts_with('+');
    return {start + (hasSign ? 1 : 0), isNegative};
}

bool StartsWithDigit(std::string_view text)
{
    return !text.empty() && c_digits.find(text.front()) != std::string_view::npos;
}

/// Whether an unsigned number that no double holds lies above the doubles, rather than between zero and the smallest.
bool IsAboveOne(std::string_view number)
{
    const std::size_t exponentMark = std::min(number.find_first_of("eE"), number.size());
    const std::string_view mantissa = number.substr(0, exponentMark);
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const std::size_t firstDigit = std::min(mantissa.find_first_not_of("0."), mantissa.size());
    const double exponent = exponentMark < number.size()
                                ? static_cast<double>(NumberText::ParseInteger(number.substr(exponentMark + 1)).value)
                                : 0;
    return exponent + static_cast<double>(point) - static_cast<double>(firstDigit) > 0;
}

} // namespace

ParsedNumber<long long> NumberText::ParseInteger(std::string_view text) noexcept
{
    const Prefix prefix = ReadPrefix(text);
    const std::string_view digits = text.substr(prefix.length);
    if (!StartsWithDigit(digits)) return {};

    // Read with its minus sign, for the lowest value has no positive counterpart.
    const char* first = digits.data() - (prefix.isNegative ? 1 : 0);
    long long value = 0;
    const std::from_chars_result result = std::from_chars(first, digits.data() + digits.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        using Limits = std::numeric_limits<long long>;
        value = prefix.isNegative ? Limits::min() : Limits::max();
    }
    return {value, static_cast<std::size_t>(result.ptr - text.data())};
}

ParsedNumber<double> NumberText::ParseReal(std::string_view text) noexcept
{
    const Prefix prefix = ReadPrefix(text);
    const std::string_view digits = text.substr(prefix.length);
    const std::string_view behindPoint = digits.starts_with('.') ? digits.substr(1) : digits;
    if (!StartsWithDigit(behindPoint)) return {};

    double value = 0;
    const std::from_chars_result result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    const auto length = static_cast<std::size_t>(result.ptr - digits.data());
    constexpr double c_largest = std::numeric_limits<double>::max();
    if (result.ec == std::errc::result_out_of_range) value = IsAboveOne(digits.substr(0, length)) ? c_largest : 0;
    value = std::min(value, c_largest);
    return {prefix.isNegative ? -value : value, prefix.length + length};
}

} // namespace Kernel
