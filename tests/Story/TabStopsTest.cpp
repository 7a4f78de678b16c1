#include <Story/TabStops.h>

#include <gtest/gtest.h>

#include <limits>
#include <optional>

namespace {

using namespace Story;

constexpr double c_nan = std::numeric_limits<double>::quiet_NaN();
constexpr double c_infinity = std::numeric_limits<double>::infinity();

/// Left stops at 10, 20 and 30, right ones 0 and 50 from the right.
TabStops MakeStops()
{
    TabStops stops;
    for (const double position : {30.0, 10.0, 20.0})
        stops.Set({position, Tab::Left, false});
    for (const double position : {50.0, 0.0})
        stops.Set({position, Tab::Right, true});
    return stops;
}

std::optional<double> At(const TabStops& stops, TabStops::const_iterator stop)
{
    return stop == stops.end() ? std::nullopt : std::optional(stop->position);
}

TEST(TabStops, AreInOrderAndOnePlaceHasOne)
{
    TabStops stops = MakeStops();
    stops.Set({c_nan, Tab::Left, false});
    stops.Set({-c_infinity, Tab::Left, false});
    TabStop leading(20, Tab::Right, false);
    leading.SetLeader(TabLeader::Dots);
    stops.Set(leading);
    const std::vector<TabStop> expected{
        {10, Tab::Left, false}, leading, {30, Tab::Left, false}, {0, Tab::Right, true}, {50, Tab::Right, true}};
    EXPECT_EQ(std::vector<TabStop>(stops.begin(), stops.end()), expected);
    EXPECT_FALSE(stops == MakeStops());

    stops.Set({20, Tab::Left, false});
    EXPECT_TRUE(stops == MakeStops());
    EXPECT_EQ(stops.GetHash(), MakeStops().GetHash());
    stops.Delete(0, false);
    stops.Delete(c_nan, false);
    EXPECT_TRUE(stops == MakeStops());
    stops.Delete(0, true);
    EXPECT_EQ(At(stops, stops.FindInexact(0, true, 1)), std::nullopt);
    for (const double position : {10.0, 20.0, 30.0})
        stops.Delete(position, false);
    stops.Delete(50, true);
    EXPECT_TRUE(stops.IsEmpty());
}

TEST(TabStops, InexactLookUpTakesTheNearest)
{
    const TabStops stops = MakeStops();
    const std::tuple<double, bool, double, std::optional<double>> rows[] = {
        {10, false, 0, 10},      {10.25, false, 0.25, 10}, {9.75, false, 0.25, 10}, {10.26, false, 0.25, {}},
        {14, false, 100, 10},    {16, false, 100, 20},     {1000, false, 1e9, 30},  {-5, false, 100, 10},
        {20, true, 30, 0},       {26, true, 30, 50},       {49, true, 0.5, {}},     {-0.2, true, 0.25, 0},
        {c_nan, false, 1e9, {}}, {10, false, -1, {}},      {10, false, c_nan, {}},  {c_infinity, true, 1, {}},
    };
    for (const auto& [position, fromRight, tolerance, found] : rows)
        EXPECT_EQ(At(stops, stops.FindInexact(position, fromRight, tolerance)), found) << position;
}

TEST(TabStops, NextComesFromTheLeftThenFromTheRight)
{
    const TabStops stops = MakeStops();
    struct Row
    {
        double position, width, tolerance;
        std::optional<double> found;
        bool fromRight = false;
    };
    const Row rows[] = {
        {0, 0, 0, 10},           {10, 0, 0, 10},           {10.2, 0, 0.25, 10},
        {10.3, 0, 0.25, 20},     {30.5, 0, 0.25, {}},      {31, 200, 0, 50, true},
        {150, 200, 0, 50, true}, {150.5, 200, 0, 0, true}, {200.2, 200, 0.25, 0, true},
        {201, 200, 0.25, {}},    {c_nan, 200, 0, {}},      {31, c_nan, 0, {}},
    };
    for (const Row& row : rows) {
        const auto found = stops.FindNextInexact(row.position, row.width, row.tolerance);
        EXPECT_EQ(At(stops, found), row.found) << row.position;
        EXPECT_EQ(row.found && found->fromRight, row.fromRight) << row.position;
    }
    EXPECT_EQ(At(stops, stops.FindNextInexact(31, 20, 0)), std::nullopt);
}

} // namespace
