#include <Kernel/FormatString.h>

namespace Kernel {

std::string FormatArguments(std::string_view text, const FormatArgument* arguments, std::size_t count)
{
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char next = text[i] == '%' && i + 1 < text.size() ? text[i + 1] : '\0';
        if (next == '%') {
            result += '%';
            ++i;
        } else if (next >= '1' && next <= '9' && static_cast<std::size_t>(next - '1') < count) {
            result += arguments[next - '1'].text;
            ++i;
        } else {
            result += text[i];
        }
    }
    return result;
}

} // namespace Kernel
