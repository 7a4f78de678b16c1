#include <Kernel/CharTraits.h>

#include <unicode/uchar.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace Kernel {

namespace {

// ICU's macro narrows its bytes unsaid.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"

/// Negative for a broken sequence.
inline UChar32 Next(std::string_view text, std::size_t& position)
{
    UChar32 codePoint = 0;
    U8_NEXT(text, position, text.size(), codePoint);
    return codePoint;
}

#pragma GCC diagnostic pop

} // namespace

std::size_t CharTraits::GetValidLength(const char* text, std::size_t size) noexcept
{
    for (std::size_t position = 0; position < size;) {
        const std::size_t start = position;
        if (Next({text, size}, position) < 0) return start;
    }
    return size;
}

void CharTraits::AppendCodePoint(std::string& text, char32_t codePoint)
{
    char bytes[U8_MAX_LENGTH];
    std::size_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, IsScalarValue(codePoint) ? codePoint : c_replacement);
    text.append(bytes, length);
}

char32_t CharTraits::DecodeCodePoint(std::string_view text, std::size_t& position) noexcept
{
    const UChar32 codePoint = Next(text, position);
    return codePoint < 0 ? c_replacement : static_cast<char32_t>(codePoint);
}

std::string CharTraits::ToUtf8(std::u16string_view text)
{
    std::string result(3 * text.size(), '\0');
    std::size_t length = 0;
    for (std::size_t position = 0; position < text.size();) {
        char32_t codePoint = 0;
        U16_NEXT(text, position, text.size(), codePoint);
        U8_APPEND_UNSAFE(result, length, U_IS_SURROGATE(codePoint) ? c_replacement : codePoint);
    }
    result.resize(length);
    return result;
}

bool CharTraits::IsWide(char32_t character) noexcept
{
    const int width = u_getIntPropertyValue(static_cast<UChar32>(character), UCHAR_EAST_ASIAN_WIDTH);
    return width == U_EA_WIDE || width == U_EA_FULLWIDTH;
}

} // namespace Kernel
