#pragma once

#include <Kernel/ToString.h>

#include <array>
#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>

namespace Kernel {

/// One value for a placeholder, as text.
class QUILLET_API FormatArgument
{
public:
    FormatArgument(std::string_view value) : text(value) {}
    FormatArgument(const std::string& value) : text(value) {}
    FormatArgument(const char* value) : text(value ? value : "") {}
    FormatArgument(char value) : text(1, value) {}
    template <std::integral T>
    FormatArgument(T value) : text(ToString(value))
    {}
    template <std::floating_point T>
    FormatArgument(T value) : text(ToString(value))
    {}

    std::string text;
};

/// The text behind `FormatString`, for callers that collect their values first.
QUILLET_API std::string FormatArguments(std::string_view text, const FormatArgument* arguments, std::size_t count);

/// Puts values in the places of `%1` to `%9`: `FormatString("page %1 of %2", 3, 7)` gives "page 3 of 7".
///
/// A placeholder may come more than once and in any order; one without a value stays as it is, and so does a `%` that
/// is followed by anything else. `%%` gives one `%`. Values are not searched for placeholders. Numbers look the same in
/// every locale.
template <typename... Arguments>
std::string FormatString(std::string_view text, const Arguments&... arguments)
{
    const std::array<FormatArgument, sizeof...(Arguments)> values{FormatArgument(arguments)...};
    return FormatArguments(text, values.data(), values.size());
}

} // namespace Kernel
