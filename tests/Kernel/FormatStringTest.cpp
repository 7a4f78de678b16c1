#include <Kernel/FormatString.h>
#include <Kernel/NumberText.h>

#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <locale>

using Kernel::FormatString;
using Kernel::ToString;

namespace {

TEST(FormatStringTest, PutsValuesInPlaces)
{
    EXPECT_EQ(FormatString("plain"), "plain");
    EXPECT_EQ(FormatString("page %1 of %2", 3, 7u), "page 3 of 7");
    EXPECT_EQ(FormatString("%2%1%2", "a", std::string("b")), "bab");
    EXPECT_EQ(FormatString("%1 %2 %3", 0.5, -1e9f, 'x'), "0.5 -1000000000 x");
    EXPECT_EQ(FormatString("%1%2%3%4%5%6%7%8%9", 1, 2, 3, 4, 5, 6, 7, 8, 9), "123456789");
    EXPECT_EQ(FormatString("%10", "ten"), "ten0");
    EXPECT_EQ(FormatString("100%% of %1", "%2", "no"), "100% of %2") << "values are not searched";
    EXPECT_EQ(FormatString("%%1", "no"), "%1");
    EXPECT_EQ(FormatString("%2 %0 %d %", 1), "%2 %0 %d %");
    EXPECT_EQ(FormatString("[%1]", static_cast<const char*>(nullptr)), "[]");
}

TEST(ToStringTest, WritesIntegers)
{
    EXPECT_EQ(ToString(0), "0");
    EXPECT_EQ(ToString(std::numeric_limits<long long>::min()), "-9223372036854775808");
    EXPECT_EQ(ToString(std::numeric_limits<unsigned long long>::max()), "18446744073709551615");
    EXPECT_EQ(ToString(static_cast<unsigned char>(200)), "200");
}

TEST(ToStringTest, RoundsReals)
{
    struct Row
    {
        double value;
        int precision;
        const char* text;
    };
    const Row rows[] = {
        {0, 3, "0"},
        {1, 3, "1"},
        {100, 0, "100"},
        {0.5, 3, "0.5"},
        {-2.0625, 3, "-2.062"},
        {2.9999, 3, "3"},
        {-0.0001, 3, "0"},
        {1e-7, 3, "0"},
        {1234567, 3, "1234567"},
        {0.1, -5, "0"},
        {-0.0, 3, "0"},
        {9.996, 2, "10"},
        {0.1, 9999, "0.10000000000000001"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(ToString(row.value, row.precision), row.text) << row.value;
    EXPECT_EQ(ToString(std::numeric_limits<double>::max(), 3).size(), 309u);
}

TEST(ToStringTest, RealsComeBackWithoutExponent)
{
    for (double value : {0.1, 1.0 / 3, 1e-300, 1e300, 5e-324, std::numeric_limits<double>::max(), -12345.678}) {
        const std::string text = ToString(value);
        EXPECT_EQ(text.find('e'), std::string::npos) << text;
        EXPECT_EQ(Kernel::NumberText::ParseReal(text).value, value) << text;
    }
    EXPECT_EQ(ToString(1.4f), "1.4");
}

/// Puts every locale facility that a careless number would pass through into the German way of writing.
class CommaLocale
{
public:
    CommaLocale() : cxxLocale(std::locale::global(std::locale(std::locale::classic(), new Comma)))
    {
        for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8"}) {
            if (std::setlocale(LC_NUMERIC, name)) break;
        }
    }
    ~CommaLocale()
    {
        std::setlocale(LC_NUMERIC, "C");
        std::locale::global(cxxLocale);
    }

private:
    struct Comma : std::numpunct<char>
    {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };

    std::locale cxxLocale;
};

TEST(ToStringTest, IgnoresTheLocale)
{
    const CommaLocale locale;
    EXPECT_EQ(FormatString("%1 %2", 1234.5, 1234567), "1234.5 1234567");
    EXPECT_EQ(ToString(1234.5678, 2), "1234.57");
    EXPECT_EQ(Kernel::NumberText::ParseReal("1.5").value, 1.5);
    EXPECT_EQ(Kernel::NumberText::ParseReal("1,5").length, 1u);
    EXPECT_EQ(Kernel::NumberText::ParseInteger("1.234").value, 1);
}

} // namespace
