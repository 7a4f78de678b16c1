#include <Kernel/ByteOrderMark.h>

#include <Kernel/CharTraits.h>

#include <algorithm>
#include <string_view>

namespace Kernel {

namespace {

constexpr std::string_view GetMarkBytes(ByteOrderMark mark)
{
    switch (mark) {
    case ByteOrderMark::Utf8:
        return "\xEF\xBB\xBF";
    case ByteOrderMark::Utf16BigEndian:
        return "\xFE\xFF";
    case ByteOrderMark::Utf16LittleEndian:
        return "\xFF\xFE";
    case ByteOrderMark::None:
        break;
    }
    return {};
}

std::string RepairUtf8(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    std::size_t position = 0;
    while (position < text.size()) {
        const std::size_t validLength = CharTraits::GetValidLength(text.data() + position, text.size() - position);
        result.append(text, position, validLength);
        position += validLength;
        if (position < text.size()) {
            CharTraits::AppendCodePoint(result, CharTraits::DecodeCodePoint(text, position));
        }
    }
    return result;
}

std::string ConvertUtf16(std::string_view bytes, ByteOrderMark order)
{
    const std::size_t highByte = order == ByteOrderMark::Utf16BigEndian ? 0 : 1;
    std::u16string units(bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < units.size(); ++i) {
        const auto high = static_cast<unsigned char>(bytes[2 * i + highByte]);
        const auto low = static_cast<unsigned char>(bytes[2 * i + 1 - highByte]);
        units[i] = static_cast<char16_t>(high << 8 | low);
    }
    if (bytes.size() % 2 != 0) units += static_cast<char16_t>(CharTraits::c_replacement);
    return CharTraits::ToUtf8(units);
}

} // namespace

ByteOrderMark GetByteOrderMark(const char* bytes, std::size_t size) noexcept
{
    const std::string_view text(bytes, size);
    for (ByteOrderMark mark : {ByteOrderMark::Utf8, ByteOrderMark::Utf16BigEndian, ByteOrderMark::Utf16LittleEndian}) {
        if (text.starts_with(GetMarkBytes(mark))) return mark;
    }
    return ByteOrderMark::None;
}

std::string ConvertToUtf8(const char* bytes, std::size_t size, ByteOrderMark mark)
{
    std::string_view text(bytes, size);
    text.remove_prefix(std::min(size, GetMarkBytes(mark).size()));
    const bool isUtf16 = mark == ByteOrderMark::Utf16BigEndian || mark == ByteOrderMark::Utf16LittleEndian;
    return isUtf16 ? ConvertUtf16(text, mark) : RepairUtf8(text);
}

} // namespace Kernel
