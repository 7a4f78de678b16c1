#include <Story/NumberFormat.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace Story;
using enum NumberFormat;

constexpr int c_largest = std::numeric_limits<int>::max();

TEST(NumberFormat, ReadsAndWrites)
{
    // A second text is what is written where that is not what is read.
    const std::tuple<NumberFormat, std::string, int, std::string> rows[] = {
        {Decimal, "0", 0, ""},          {Decimal, "2147483646", 2147483646, ""}, {Decimal, "007", 7, "7"},
        {LowerRoman, "iv", 4, ""},      {LowerRoman, "iiii", 4, "iv"},           {UpperRoman, "MCMXCIX", 1999, ""},
        {UpperRoman, "IC", 99, "XCIX"}, {UpperRoman, "MMMM", 4000, "4000"},      {LowerLetter, "z", 26, ""},
        {UpperLetter, "AZ", 52, ""},    {UpperLetter, "AAA", 703, ""},
    };
    for (const auto& [format, text, value, written] : rows) {
        EXPECT_EQ(ToInteger(format, std::u32string(text.begin(), text.end())), value) << text;
        EXPECT_EQ(ToText(format, value), written.empty() ? text : written) << text;
    }
    for (const NumberFormat format : {Decimal, UpperRoman, LowerRoman, UpperLetter, LowerLetter}) {
        for (int value = 1; value < 4500; ++value) {
            const std::string text = ToText(format, value);
            if (value > 3999 && (format == UpperRoman || format == LowerRoman)) continue;
            ASSERT_EQ(ToInteger(format, std::u32string(text.begin(), text.end())), value) << text;
        }
    }
}

TEST(NumberFormat, NoNumberIsZeroAndTooMuchTheLargest)
{
    const std::pair<NumberFormat, std::u32string> none[] = {
        {Decimal, U""},      {Decimal, U"1a"},    {Decimal, U"-1"},        {LowerRoman, U""},  {LowerRoman, U"ib"},
        {LowerRoman, U"IV"}, {UpperRoman, U"iv"}, {LowerLetter, U"A"},     {LowerLetter, U""}, {LowerLetter, U"a1"},
        {UpperLetter, U"["}, {UpperLetter, U"@"}, {LowerLetter, U"\u00E9"}};
    for (const auto& [format, text] : none)
        EXPECT_EQ(ToInteger(format, text), 0) << std::string(text.begin(), text.end());
    EXPECT_EQ(ToInteger(Decimal, U"2147483648"), c_largest);
    EXPECT_EQ(ToInteger(Decimal, std::u32string(100000, U'9')), c_largest);
    EXPECT_EQ(ToInteger(LowerLetter, std::u32string(100000, U'z')), c_largest);
    EXPECT_EQ(ToInteger(LowerRoman, std::u32string(3000000, U'm')), c_largest);
    for (const NumberFormat format : {Decimal, UpperRoman, LowerLetter}) {
        EXPECT_EQ(ToText(format, 0), "0");
        EXPECT_EQ(ToText(format, std::numeric_limits<int>::min()), "-2147483648");
    }
    EXPECT_EQ(ToText(UpperLetter, c_largest), "FXSHRXW");
}

} // namespace
