#include <Kernel/ToString.h>

#include <algorithm>
#include <array>
#include <charconv>

namespace Kernel {

namespace {

/// Holds any double as a fixed fraction: the smallest has 323 zeros behind the point and 17 digits.
using Buffer = std::array<char, 400>;

template <typename... Arguments>
std::string Write(Arguments... arguments)
{
    Buffer buffer;
    const std::to_chars_result result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), arguments...);
    return std::string(buffer.data(), result.ptr);
}

constexpr int c_maxPrecision = 17;

} // namespace

std::string ToString(long long value)
{
    return Write(value);
}

std::string ToString(unsigned long long value)
{
    return Write(value);
}

std::string ToString(double value)
{
    return Write(value, std::chars_format::fixed);
}

std::string ToString(float value)
{
    return Write(value, std::chars_format::fixed);
}

std::string ToString(double value, int precision)
{
    std::string text = Write(value, std::chars_format::fixed, std::clamp(precision, 0, c_maxPrecision));
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.') text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

} // namespace Kernel
