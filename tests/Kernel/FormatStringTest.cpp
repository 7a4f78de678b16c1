#include <Kernel/FormatString.h>
#include <Kernel/LocalisedString.h>
#include <Kernel/NumberText.h>

#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <locale>

namespace {

using namespace Kernel;

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
    EXPECT_EQ(ToString(-0.0001, 3), "0");
    EXPECT_EQ(ToString(0.1, -5), "0");
    EXPECT_EQ(ToString(9.996, 2), "10");
    EXPECT_EQ(ToString(0.1, 9999), "0.10000000000000001");
    EXPECT_EQ(ToString(std::numeric_limits<double>::max(), 3).size(), 309u);
}

TEST(ToStringTest, RealsComeBackWithoutExponent)
{
    for (double value : {0.1, 1.0 / 3, 1e-300, 1e300, 5e-324, std::numeric_limits<double>::max(), -12345.678}) {
        const std::string text = ToString(value);
        EXPECT_EQ(text.find('e'), std::string::npos) << text;
        EXPECT_EQ(NumberText::ParseReal(text).value, value) << text;
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
    EXPECT_EQ(NumberText::ParseReal("1.5").value, 1.5);
    EXPECT_EQ(NumberText::ParseReal("1,5").length, 1u);
    EXPECT_EQ(NumberText::ParseInteger("1.234").value, 1);
    std::setlocale(LC_NUMERIC, "C");
    std::locale::global(before);
}

constexpr long long c_lowest = std::numeric_limits<long long>::min();
constexpr long long c_highest = std::numeric_limits<long long>::max();
constexpr double c_largest = std::numeric_limits<double>::max();

TEST(NumberTextTest, ParsesAsFarAsThereIsANumber)
{
    const std::tuple<std::string_view, long long, std::size_t> integers[] = {
        {"", 0, 0},
        {"-", 0, 0},
        {"+-5", 0, 0},
        {"\n 0042%%EOF", 42, 6},
        {"-12.5", -12, 3},
        {"9223372036854775808 ", c_highest, 19},
        {"-99999999999999999999999", c_lowest, 24},
        // Nothing behind the text is read.
        {std::string_view("12345", 2), 12, 2},
    };
    const std::string longFraction = "0." + std::string(400, '0') + "1";
    const std::tuple<std::string_view, double, std::size_t> reals[] = {
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
    const auto expect = [](const auto& rows, auto parse) {
        for (const auto& [text, value, length] : rows) {
            SCOPED_TRACE(text);
            EXPECT_EQ(parse(text).value, value);
            EXPECT_EQ(parse(text).length, length);
        }
    };
    expect(integers, NumberText::ParseInteger);
    expect(reals, NumberText::ParseReal);
}

TEST(LocalisedString, SpeaksTheTableThatIsSetNow)
{
    const LocalisedString page("Page %1", "Print");
    const LocalisedString other("Other", "Print");
    const auto made = LocalisedString::CreateFakeFromString("Page %1");
    EXPECT_EQ(page.ToString(), "Page %1");
    LocalisedString::SetTable([](const std::string& key, const std::string& context) {
        // A table may ask in its turn.
        if (key == "Page %1") return "Seite %1 (" + LocalisedString(context, "").ToString() + ")";
        return key == "Print" ? std::string("Druck") : std::string();
    });
    EXPECT_EQ(page.ToString(), "Seite %1 (Druck)");
    EXPECT_EQ(other.ToString(), "Other");
    EXPECT_EQ(made.ToString(), "Page %1");
    LocalisedString::SetTable(nullptr);
    EXPECT_EQ(static_cast<std::string>(page), "Page %1");
}

} // namespace
