#include <Kernel/ByteOrderMark.h>
#include <Kernel/CharTraits.h>
#include <Kernel/CharacterType.h>
#include <Kernel/LogicalOrder.h>

#include <gtest/gtest.h>

namespace {

using namespace Kernel;
using namespace std::string_view_literals;

/// Name, bytes, how many of them are valid, and the characters.
const std::tuple<const char*, std::string_view, std::size_t, std::vector<char32_t>> c_utf8Cases[] = {
    {"a zero byte is a character", std::string_view("a\0b", 3), 3, {'a', 0, 'b'}},
    {"first and last of each length",
     "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF",
     19,
     {0x7F, 0x80, 0x7FF, 0x800, 0xFFFF, 0x10000, 0x10FFFF}},
    {"overlong slash", "a\xC0\xAF", 1, {'a', 0xFFFD, 0xFFFD}},
    {"overlong in four bytes", "\xF0\x8F\xBF\xBF", 0, {0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD}},
    {"surrogate", "ab\xED\xA0\x80", 2, {'a', 'b', 0xFFFD, 0xFFFD, 0xFFFD}},
    {"no lead byte", "\xFF\x80z", 0, {0xFFFD, 0xFFFD, 'z'}},
    {"cut at the end", "\xC3\xA9\xE2\x82", 2, {0xE9, 0xFFFD}},
    {"cut by a letter", "\xF0\x9F\x98z", 0, {0xFFFD, 'z'}},
};

TEST(CharTraitsTest, ReadsUtf8)
{
    for (const auto& [name, bytes, validLength, expected] : c_utf8Cases) {
        EXPECT_EQ(CharTraits::GetValidLength(bytes.data(), bytes.size()), validLength) << name;
        std::vector<char32_t> decoded;
        for (std::size_t position = 0; position < bytes.size();)
            decoded.push_back(CharTraits::DecodeCodePoint(bytes, position));
        EXPECT_EQ(decoded, expected) << name;
    }
}

TEST(CharTraitsTest, EveryCodePointComesBack)
{
    for (char32_t value = 0; value <= 0x110000; ++value) {
        std::string text;
        CharTraits::AppendCodePoint(text, value);
        std::size_t position = 0;
        const char32_t expected = CharTraits::IsScalarValue(value) ? value : CharTraits::c_replacement;
        ASSERT_EQ(CharTraits::DecodeCodePoint(text, position), expected) << static_cast<std::uint32_t>(value);
        ASSERT_EQ(position, text.size());
    }
}

TEST(CharTraitsTest, TellsWideCharacters)
{
    for (const char32_t wide : {U'\u3042', U'\u4E00', U'\uD55C', U'\uFF21', U'\u3000', U'\U00020000'})
        EXPECT_TRUE(CharTraits::IsWide(wide)) << static_cast<std::uint32_t>(wide);
    for (const char32_t narrow : {U'A', U'\u00E9', U'\u05D0', U'\uFF71', U'\u0000', U'\U0010FFFF'})
        EXPECT_FALSE(CharTraits::IsWide(narrow)) << static_cast<std::uint32_t>(narrow);
}

/// Name, bytes, mark and text.
const std::tuple<const char*, std::string_view, ByteOrderMark, std::string_view> c_markCases[] = {
    {"no mark", "plain"sv, ByteOrderMark::None, "plain"sv},
    {"half a mark", "\xFE"sv, ByteOrderMark::None, "\uFFFD"sv},
    {"UTF-8", "\xEF\xBB\xBFgr\xC3\xBC\xC3\x9F"sv, ByteOrderMark::Utf8, "grüß"sv},
    {"broken UTF-8", "\xEF\xBB\xBF\xC3(\xFFz"sv, ByteOrderMark::Utf8, "\uFFFD(\uFFFDz"sv},
    {"big endian", "\xFE\xFF\0A\x20\xAC"sv, ByteOrderMark::Utf16BigEndian, "A€"sv},
    {"little endian", "\xFF\xFE\x41\0\xAC\x20"sv, ByteOrderMark::Utf16LittleEndian, "A€"sv},
    {"pair", "\xFE\xFF\xD8\x3D\xDE\x00"sv, ByteOrderMark::Utf16BigEndian, "😀"sv},
    {"lone high", "\xFE\xFF\xD8\x3D\0A"sv, ByteOrderMark::Utf16BigEndian, "\uFFFDA"sv},
    {"lone low", "\xFE\xFF\xDE\x00\0A"sv, ByteOrderMark::Utf16BigEndian, "\uFFFDA"sv},
    {"high at the end", "\xFE\xFF\0A\xD8\x3D"sv, ByteOrderMark::Utf16BigEndian, "A\uFFFD"sv},
    {"two highs, then low", "\xFE\xFF\xD8\x3D\xD8\x3D\xDE\x00"sv, ByteOrderMark::Utf16BigEndian, "\uFFFD😀"sv},
    {"half a unit at the end", "\xFE\xFF\0A\0"sv, ByteOrderMark::Utf16BigEndian, "A\uFFFD"sv},
};

TEST(ByteOrderMarkTest, FindsMarkAndConverts)
{
    for (const auto& [name, bytes, mark, text] : c_markCases) {
        EXPECT_EQ(GetByteOrderMark(bytes.data(), bytes.size()), mark) << name;
        EXPECT_EQ(ConvertToUtf8(bytes.data(), bytes.size(), mark), text) << name;
    }
}

TEST(CharacterType, TellsSpacesLettersAndDigits)
{
    // The category by the number that hosts store; whether it is a space, small, a letter or digit.
    const std::tuple<char32_t, int, bool, bool, bool> rows[] = {
        {U'\n', 15, true, false, false},       {U'\u00A0', 12, true, false, false},
        {U'\u2028', 13, true, false, false},   {U'\u200B', 16, false, false, false},
        {U'\u00E9', 2, false, true, true},     {U'\u0416', 1, false, false, true},
        {U'\u0664', 9, false, false, true},    {U'_', 22, false, false, false},
        {U'\U0001D41A', 2, false, true, true}, {U'\u2022', 23, false, false, false},
        {U'\u25CF', 27, false, false, false},  {U'\uF0B7', 17, false, false, false},
        {0xD800, 18, false, false, false},     {0x110000, 0, false, false, false},
        {0xFFFFFFFF, 0, false, false, false},
    };
    for (const auto& [character, category, isSpace, isLower, isAlnum] : rows) {
        SCOPED_TRACE(static_cast<unsigned>(character));
        EXPECT_EQ(IsSpace(character), isSpace);
        EXPECT_EQ(IsLower(character), isLower);
        EXPECT_EQ(IsAlnum(character), isAlnum);
        EXPECT_EQ(static_cast<int>(GetUnicodeCharacterType(character)), category);
    }
    EXPECT_EQ(GetUnicodeCharacterType(U'\u2022'), UnicodeCharacterType::OtherPunctuation);
}

TEST(LogicalOrder, IsThatInWhichALineIsRead)
{
    const std::tuple<const char*, std::u32string, std::u32string> rows[] = {
        {"left to right", U"ab 12", U""},
        {"one word", U"גבא", U"אבג"},
        {"numbers stay", U"34 גבא", U"אבג 34"},
        {"numbers of both kinds", U"34 12 גבא", U"אבג 12 34"},
        {"a number with a word", U"גבא PDF 1.7 דה", U"הד PDF 1.7 אבג"},
        {"a number in brackets", U"see [12] גבא here", U"see [12] אבג here"},
        {"brackets as they look", U"(בא) דה", U"הד (אב)"},
        {"a full stop at the left", U".גבא דה", U"הד אבג."},
        {"a word in a line that runs to the right", U"the word גבא is here", U"the word אבג is here"},
        {"a name in a line that runs to the left", U"דג Latin גבא", U"אבג Latin גד"},
        {"a tab", U"דג\tגבא", U"אבג\tגד"},
        {"beyond the first plane", U"\U00010401\U0001E900\U0001E901\U0001E902",
         U"\U0001E902\U0001E901\U0001E900\U00010401"},
        {"no characters", {0x110000, U'א', U'ב', 0xFFFFFFFF}, {0xFFFFFFFF, U'ב', U'א', 0x110000}},
    };
    for (const auto& [what, visual, expected] : rows) {
        std::u32string logical;
        for (const ReadCharacter& character : GetLogicalOrder(visual))
            logical += character.GetFrom(visual);
        EXPECT_EQ(logical, expected) << what;
    }
}

} // namespace
