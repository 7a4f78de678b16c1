#pragma once

#include <array>
#include <cstddef>

namespace Quillet::CharType {

namespace Detail {

enum Class : unsigned char { Regular, Space, Delimiter };

inline constexpr unsigned char c_spaces[] = {0, 9, 10, 12, 13, 32};
inline constexpr unsigned char c_delimiters[] = {'%', '(', ')', '/', '<', '>', '[', ']', '{', '}'};

constexpr std::array<Class, 256> MakeClasses()
{
    std::array<Class, 256> classes{};
    for (const unsigned char byte : c_spaces)
        classes[byte] = Space;
    for (const unsigned char byte : c_delimiters)
        classes[byte] = Delimiter;
    return classes;
}

inline constexpr std::array<Class, 256> c_classes = MakeClasses();

} // namespace Detail

/// Neither white space nor a delimiter (ISO 32000-2, 7.2.3).
constexpr bool IsPdfRegular(unsigned char byte)
{
    return Detail::c_classes[byte] == Detail::Regular;
}

/// White space of PDF syntax, byte 0 included.
constexpr bool IsPdfSpace(unsigned char byte)
{
    return Detail::c_classes[byte] == Detail::Space;
}

constexpr bool IsDigit(unsigned char byte)
{
    return byte >= '0' && byte <= '9';
}

constexpr bool IsLetter(unsigned char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

/// The value of a hexadecimal digit, or -1.
constexpr int GetHexValue(unsigned char byte)
{
    if (IsDigit(byte)) return byte - '0';
    if (byte >= 'a' && byte <= 'f') return byte - 'a' + 10;
    if (byte >= 'A' && byte <= 'F') return byte - 'A' + 10;
    return -1;
}

} // namespace Quillet::CharType
