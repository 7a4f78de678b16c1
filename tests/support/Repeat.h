#pragma once

#include <string>

namespace Quillet {

inline std::string Repeat(const std::string& text, int count)
{
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

} // namespace Quillet
