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
    EXPECT_EQ(FormatString("page %1 of %2", 3, 7u), "page 3 of 7");
    EXPECT_EQ(FormatString("%2%1%2", "a", std::string("b")), "bab");
    EXPECT_EQ(FormatString("%1 %2 %3", std::numeric_limits<long long>::min(), -1e9f, 'x'),
              "-9223372036854775808 -1000000000 x");
    EXPECT_EQ(FormatString("%10", "ten"), "ten0");
    EXPECT_EQ(FormatString("100%% of %1", "%2", "no"), "100% of %2") << "values are not searched";
    EXPECT_EQ(FormatString("%%1", "no"), "%1");
    EXPECT_EQ(FormatString("%2 %0 %d %", 1), "%2 %0 %d %");
    EXPECT_EQ(FormatString("[%1]", static_cast<const char*>(nullptr)), "[]");
}

TEST(ToStringTest, RoundsReals)
{
    const struct
    {
        double value;
        int precision;
        const char* text;
    } rows[] = {
        {-0.0001, 3, "0"},
        {0.1, -5, "0"},
        {9.996, 2, "10"},
        {0.1, 9999, "0.10000000000000001"},
    };
    for (const auto& row : rows)
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
}

TEST(ToStringTest, IgnoresTheLocale)
{
    struct Comma : std::numpunct<char>
    {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Comma));
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8"}) {
        if (std::setlocale(LC_NUMERIC, name)) break;
    }
    EXPECT_EQ(FormatString("%1 %2", 1234.5, 1234567), "1234.5 1234567");
    EXPECT_EQ(ToString(1234.5678, 2), "1234.57");
    EXPECT_EQ(Kernel::NumberText::ParseReal("1.5").value, 1.5);
    EXPECT_EQ(Kernel::NumberText::ParseReal("1,5").length, 1u);
    EXPECT_EQ(Kernel::NumberText::ParseInteger("1.234").value, 1);
    std::setlocale(LC_NUMERIC, "C");
    std::locale::global(before);
}

} // namespace
