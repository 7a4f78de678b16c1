#include <Kernel/CharacterType.h>

#include <gtest/gtest.h>

namespace {

using namespace Kernel;

TEST(CharacterType, TellsSpacesLettersAndDigits)
{
    struct Row
    {
        char32_t character;
        bool isSpace, isLower, isAlnum;
    };
    const Row rows[] = {
        {U' ', true, false, false},      {U'\t', true, false, false},      {U'\u00A0', true, false, false},
        {U'\u2003', true, false, false}, {U'\u2007', true, false, false},  {U'\u202F', true, false, false},
        {U'\u3000', true, false, false}, {U'\u2028', true, false, false},  {U'\u200B', false, false, false},
        {U'\0', false, false, false},    {U'a', false, true, true},        {U'A', false, false, true},
        {U'7', false, false, true},      {U'\u00E9', false, true, true},   {U'\u0416', false, false, true},
        {U'\u0664', false, false, true}, {U'\u6F22', false, false, true},  {U'\U0001D41A', false, true, true},
        {U'_', false, false, false},     {U'\u201C', false, false, false}, {U'\uE000', false, false, false},
        {0xD800, false, false, false},   {0x110000, false, false, false},  {0xFFFFFFFF, false, false, false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(IsSpace(row.character), row.isSpace) << static_cast<unsigned>(row.character);
        EXPECT_EQ(IsLower(row.character), row.isLower) << static_cast<unsigned>(row.character);
        EXPECT_EQ(IsAlnum(row.character), row.isAlnum) << static_cast<unsigned>(row.character);
    }
}

TEST(CharacterType, NumbersCategoriesAsHostsStoreThem)
{
    const std::pair<char32_t, int> rows[] = {
        {U'A', 1},       {U'a', 2},       {U'5', 9},     {U' ', 12},      {U'\n', 15},     {0x9F, 15},
        {U'-', 19},      {U'(', 20},      {U'*', 23},    {U'\u2022', 23}, {U'\u25CF', 27}, {U'\u2713', 27},
        {U'\u00B7', 23}, {U'\uF0B7', 17}, {0x110000, 0}, {0xFFFFFFFF, 0},
    };
    for (const auto& [character, type] : rows)
        EXPECT_EQ(static_cast<int>(GetUnicodeCharacterType(character)), type) << static_cast<unsigned>(character);
    EXPECT_EQ(GetUnicodeCharacterType(U'\u2022'), UnicodeCharacterType::OtherPunctuation);
}

} // namespace
