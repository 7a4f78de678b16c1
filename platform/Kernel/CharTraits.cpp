#include <Kernel/CharTraits.h>

#include <unicode/uchar.h>

namespace Kernel {

namespace {

struct Sequence
{
    char32_t codePoint;
    std::size_t length;
    bool isValid;
};

/// What a lead byte promises. The second byte's range is where overlong forms, surrogates and values above U+10FFFF are
/// shut out; all bytes after it are 0x80 to 0xBF.
struct Lead
{
    std::size_t length;
    unsigned char secondFirst;
    unsigned char secondLast;
    unsigned char payloadMask;
};

constexpr Lead GetLead(unsigned char byte)
{
    if (byte >= 0xC2 && byte <= 0xDF) return {2, 0x80, 0xBF, 0x1F};
    if (byte == 0xE0) return {3, 0xA0, 0xBF, 0x0F};
    if (byte == 0xED) return {3, 0x80, 0x9F, 0x0F};
    if (byte >= 0xE1 && byte <= 0xEF) return {3, 0x80, 0xBF, 0x0F};
    if (byte == 0xF0) return {4, 0x90, 0xBF, 0x07};
    if (byte >= 0xF1 && byte <= 0xF3) return {4, 0x80, 0xBF, 0x07};
    if (byte == 0xF4) return {4, 0x80, 0x8F, 0x07};
    return {0, 0, 0, 0};
}

/// `size` is at least 1. An invalid sequence ends before the first byte that does not fit.
Sequence Decode(const char* text, std::size_t size)
{
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < 0x80) return {first, 1, true};
    const Lead lead = GetLead(first);
    if (lead.length == 0) return {CharTraits::c_replacement, 1, false};

    char32_t codePoint = first & lead.payloadMask;
    for (std::size_t i = 1; i < lead.length; ++i) {
        const unsigned char lowest = i == 1 ? lead.secondFirst : 0x80;
        const unsigned char highest = i == 1 ? lead.secondLast : 0xBF;
        const auto byte = static_cast<unsigned char>(i < size ? text[i] : 0);
        if (byte < lowest || byte > highest) return {CharTraits::c_replacement, i, false};
        codePoint = (codePoint << 6) | (byte & 0x3F);
    }
    return {codePoint, lead.length, true};
}

} // namespace

std::size_t CharTraits::GetValidLength(const char* text, std::size_t size) noexcept
{
    std::size_t position = 0;
    while (position < size) {
        const Sequence sequence = Decode(text + position, size - position);
        if (!sequence.isValid) break;
        position += sequence.length;
    }
    return position;
}

void CharTraits::AppendCodePoint(std::string& text, char32_t codePoint)
{
    const char32_t value = IsScalarValue(codePoint) ? codePoint : c_replacement;
    const auto continuation = [value](int shift) { return static_cast<char>(0x80 | ((value >> shift) & 0x3F)); };
    if (value < 0x80) {
        text += static_cast<char>(value);
    } else if (value < 0x800) {
        text += {static_cast<char>(0xC0 | (value >> 6)), continuation(0)};
    } else if (value < 0x10000) {
        text += {static_cast<char>(0xE0 | (value >> 12)), continuation(6), continuation(0)};
    } else {
        text += {static_cast<char>(0xF0 | (value >> 18)), continuation(12), continuation(6), continuation(0)};
    }
}

char32_t CharTraits::DecodeCodePoint(std::string_view text, std::size_t& position) noexcept
{
    const Sequence sequence = Decode(text.data() + position, text.size() - position);
    position += sequence.length;
    return sequence.codePoint;
}

bool CharTraits::IsWide(char32_t character) noexcept
{
    const int width = u_getIntPropertyValue(static_cast<UChar32>(character), UCHAR_EAST_ASIAN_WIDTH);
    return width == U_EA_WIDE || width == U_EA_FULLWIDTH;
}

} // namespace Kernel
