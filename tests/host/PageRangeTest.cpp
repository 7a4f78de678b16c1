#include "PageRange.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace Host::Test {
namespace {

/// The indices with blanks between, or "none" for a text that is refused.
std::string List(const std::string& text, int pageCount)
{
    const auto range = PageRange::Parse(text, pageCount);
    if (!range) return "none";
    std::string list;
    for (long long place = 0; place < range->GetLength(); ++place)
        list += std::to_string(range->GetIndex(place)) + " ";
    return list;
}

TEST(PageRange, ListsIndicesInTheOrderGiven)
{
    const struct
    {
        const char* text;
        int pageCount;
        const char* indices;
    } rows[] = {
        {"", 3, "0 1 2 "},   {"", 0, ""},         {"2", 3, "1 "},    {"1-3,7", 7, "0 1 2 6 "},   {"3,1", 3, "2 0 "},
        {"2,2", 3, "1 1 "},  {"2-", 4, "1 2 3 "}, {"4-4", 4, "3 "},  {"0", 3, "none"},           {"4", 3, "none"},
        {"1-4", 3, "none"},  {"3-1", 3, "none"},  {"-2", 3, "none"}, {"1,", 3, "none"},          {",1", 3, "none"},
        {"1--2", 3, "none"}, {"1 2", 3, "none"},  {"+1", 3, "none"}, {"one", 3, "none"},         {"1-2-3", 3, "none"},
        {"-", 3, "none"},    {"1", 0, "none"},    {"1-", 0, "none"}, {"99999999999", 3, "none"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(List(row.text, row.pageCount), row.indices) << row.text;
}

TEST(PageRange, TakesNoMemoryForAClaimedPageCount)
{
    const auto range = PageRange::Parse("1-,1-", INT_MAX);
    ASSERT_TRUE(range);
    EXPECT_EQ(range->GetLength(), 2LL * INT_MAX);
    EXPECT_EQ(range->GetIndex(INT_MAX - 1LL), INT_MAX - 1);
    EXPECT_EQ(range->GetIndex(INT_MAX), 0);
}

} // namespace
} // namespace Host::Test
