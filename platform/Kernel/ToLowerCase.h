#pragma once

#include <algorithm>
#include <string>
#include <utility>

namespace Kernel {

/// The letters of ASCII, whatever the locale says: for names that are no words of a language.
inline std::string ToLowerCase(std::string text)
{
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

} // namespace Kernel
