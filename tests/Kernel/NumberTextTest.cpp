#include <Kernel/NumberText.h>

#include <gtest/gtest.h>

#include <limits>
#include <string>

using Kernel::NumberText;

namespace {

constexpr long long c_lowest = std::numeric_limits<long long>::min();
constexpr long long c_highest = std::numeric_limits<long long>::max();
constexpr double c_largest = std::numeric_limits<double>::max();

template <typename T>
struct Row
{
    std::string_view text;
    T value;
    std::size_t length;
};

TEST(NumberTextTest, ParsesIntegers)
{
    const Row<long long> rows[] = {
        {"", 0, 0},
        {"-", 0, 0},
        {"+-5", 0, 0},
        {"\n 0042%%EOF", 42, 6},
        {"-12.5", -12, 3},
        {"9223372036854775808 ", c_highest, 19},
        {"-99999999999999999999999", c_lowest, 24},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        const auto parsed = NumberText::ParseInteger(row.text);
        EXPECT_EQ(parsed.value, row.value);
        EXPECT_EQ(parsed.length, row.length);
    }
    const std::string_view cut("12345");
    EXPECT_EQ(NumberText::ParseInteger(cut.substr(0, 2)).value, 12) << "nothing behind the text is read";
}

TEST(NumberTextTest, ParsesReals)
{
    const std::string longFraction = "0." + std::string(400, '0') + "1";
    const Row<double> rows[] = {
        {"", 0, 0},
        {"  +2.0", 2, 6},
        {"1.7e1x", 17, 5},
        {"1e+", 1, 1},
        {"0x1p3", 0, 1},
        {"1e99999999999999999999999", c_largest, 25},
        {"0e99999999999999999999999", 0, 25},
        {"0.00001e400", c_largest, 11},
        {longFraction, 0, longFraction.size()},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        const auto parsed = NumberText::ParseReal(row.text);
        EXPECT_EQ(parsed.value, row.value);
        EXPECT_EQ(parsed.length, row.length);
    }
}

} // namespace
