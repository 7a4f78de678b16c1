#include "objects/BoxIndex.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <set>
#include <vector>

namespace Quillet::Test {
namespace {

using Box = BoxIndex::Box;

TEST(BoxIndex, MissesNoBoxThatMeetsAnother)
{
    std::mt19937 random(3);
    const auto pick = [&random] { return static_cast<double>(random() % 400) / 4 - 20; };
    const auto pickBox = [&] { return Box::FromCorners({pick(), pick()}, {pick() / 4, pick()}); };
    std::vector<Box> boxes = {{0, 0, INFINITY, 1}, {NAN, 0, 5, 5}, {-INFINITY, -INFINITY, INFINITY, INFINITY}};
    for (int i = 0; i < 300; ++i)
        boxes.push_back(pickBox());
    BoxIndex index;
    for (std::size_t i = 0; i < boxes.size(); ++i)
        index.Set(i, boxes[i]);
    std::size_t seen = 0;
    std::size_t met = 0;
    for (int i = 0; i < 300; ++i) {
        const std::size_t moved = 3 + random() % 300;
        index.Set(moved, boxes[moved] = pickBox());
        const double x = pick(), y = pick();
        const Box query = i % 2 == 0 ? Box{x, y, x, y} : pickBox();
        std::set<std::size_t> visited;
        EXPECT_TRUE(index.VisitNear(query, [&](std::size_t item) { return visited.insert(item).second; }));
        seen += visited.size();
        for (std::size_t b = 0; b < boxes.size(); ++b) {
            const Box& box = boxes[b];
            if (!(box.left <= query.right && box.right >= query.left)) continue;
            if (!(box.top <= query.bottom && box.bottom >= query.top)) continue;
            ++met;
            EXPECT_TRUE(visited.contains(b)) << b;
        }
    }
    // It would be of no use if it gave all of them.
    EXPECT_LT(seen, 3 * met);
    EXPECT_TRUE(index.VisitNear({NAN, 0, 1, 1}, [](std::size_t) { return true; }));
}

} // namespace
} // namespace Quillet::Test
