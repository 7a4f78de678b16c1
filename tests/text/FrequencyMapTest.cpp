#include "text/FrequencyMap.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <tuple>
#include <vector>

namespace Quillet::Test {
namespace {

FrequencyMap MakeMap(double step, const std::vector<double>& values)
{
    FrequencyMap map(step);
    for (const double value : values)
        map.Add(value);
    return map;
}

TEST(FrequencyMapTest, FindsTheMostFrequentValueAndOfEqualsTheOneNearestToZero)
{
    const struct
    {
        std::vector<double> values;
        double rounded, average, min, max;
    } rows[] = {
        {{}, 0, 0, 0, 0},
        {{7.2}, 7, 7.2, 7, 7},
        {{5, 1, 5, 2}, 5, 5, 1, 5},
        {{2, NAN, 1, NAN, 3, 1}, 1, 1, 1, 3},
        // Equal counts.
        {{-3, 2}, 2, 2, -3, 2},
        {{-2, 3}, -2, -2, -2, 3},
        {{3, 3, -4, -4, 9}, 3, 3, -4, 9},
        // As far from 0 on either side: the first.
        {{4, -4}, -4, -4, -4, 4},
        // Halves go away from 0, and averages are those of the values as they came.
        {{0.5, 1.4}, 1, 0.95, 1, 1},
        {{-0.5, -1.25}, -1, -0.875, -1, -1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.values));
        const FrequencyMap map = MakeMap(1, row.values);
        EXPECT_EQ(map.GetBestRounded(), row.rounded);
        EXPECT_DOUBLE_EQ(map.GetBestAverage(), row.average);
        EXPECT_EQ(map.GetMinValue(), row.min);
        EXPECT_EQ(map.GetMaxValue(), row.max);
        EXPECT_EQ(map.total, std::ranges::count_if(row.values, [](double value) { return !std::isnan(value); }));
    }
}

TEST(FrequencyMapTest, CountsWhatIsAtOrAboveAValueAndWhatIsNear)
{
    const FrequencyMap map = MakeMap(0.5, {1, 1.1, 2, 2, 2, 4});
    const std::pair<double, int> single[] = {{-9, 2}, {1, 2}, {1.2, 2}, {1.25, 3}, {2, 3}, {2.4, 1}, {4, 1}, {4.5, 0}};
    for (const auto& [value, count] : single)
        EXPECT_EQ(map.GetFrequency(value), count) << value;
    const std::tuple<double, double, int> around[] = {{1.5, 0.5, 5}, {1.5, 0.2, 0}, {1, 0, 2}, {3, 1, 4},
                                                      {0, 100, 6},   {9, 1, 0},     {-9, 1, 0}};
    for (const auto& [value, tolerance, count] : around)
        EXPECT_EQ(map.GetFrequency(value, tolerance), count) << value << " " << tolerance;
    EXPECT_EQ(FrequencyMap(1).GetFrequency(0), 0);
    EXPECT_EQ(FrequencyMap(1).GetFrequency(0, 5), 0);
}

TEST(FrequencyMapTest, FallsBackOnTheNextBestWhenTheBestIsErased)
{
    FrequencyMap map = MakeMap(0.05, {1, 1, 1, 2.5, 2.51, 7});
    const double bests[] = {1, 2.505, 7};
    const int totals[] = {6, 3, 1};
    for (std::size_t i = 0; i < std::size(bests); ++i) {
        EXPECT_DOUBLE_EQ(map.GetBestAverage(), bests[i]);
        EXPECT_EQ(map.total, totals[i]);
        map.erase(map.GetBest());
    }
    EXPECT_EQ(map.total, 0);
    EXPECT_TRUE(map.GetBest() == map.buckets.begin());
    EXPECT_EQ(map.GetBestAverage(), 0);
}

} // namespace
} // namespace Quillet::Test
