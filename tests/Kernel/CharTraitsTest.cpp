#include <Kernel/CharTraits.h>

#include <gtest/gtest.h>

#include <vector>

using Kernel::CharTraits;

namespace {

const struct
{
    const char* name;
    std::string_view bytes;
    std::size_t validLength;
    std::vector<char32_t> decoded;
} c_utf8Cases[] = {
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
    for (const auto& row : c_utf8Cases) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(CharTraits::GetValidLength(row.bytes.data(), row.bytes.size()), row.validLength);
        std::vector<char32_t> decoded;
        for (std::size_t position = 0; position < row.bytes.size();) {
            decoded.push_back(CharTraits::DecodeCodePoint(row.bytes, position));
        }
        EXPECT_EQ(decoded, row.decoded);
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

} // namespace
