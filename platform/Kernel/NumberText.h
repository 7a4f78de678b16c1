#pragma once

#include <Kernel/Export.h>

#include <cstddef>
#include <string_view>

namespace Kernel {

/// A number found at the start of a text.
template <typename T>
struct ParsedNumber
{
    T value{};
    /// Bytes used, white space before the number included; 0 if there is no number.
    std::size_t length = 0;

    explicit operator bool() const { return length != 0; }
};

/// Numbers at the start of texts, read as `scanf` does in the C locale, whatever the locale of the process: white space
/// and a sign may come first, and what follows the number does not matter.
class QUILLET_API NumberText
{
public:
    /// As "%lld". A number out of range gives the nearest one in range.
    static ParsedNumber<long long> ParseInteger(std::string_view text) noexcept;

    /// As "%f", but for hexadecimal numbers, infinities and NaN, which are no numbers here. What is too large gives the
    /// largest finite value of its sign, what is too small gives zero; so the value is always finite. An exponent
    /// without digits is not part of the number.
    static ParsedNumber<double> ParseReal(std::string_view text) noexcept;
};

} // namespace Kernel
