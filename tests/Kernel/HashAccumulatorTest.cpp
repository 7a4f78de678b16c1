#include <Kernel/HashAccumulator.h>

#include <gtest/gtest.h>

#include <string>
#include <unordered_set>

using Kernel::AddToHash;

namespace {

template <typename... Parts>
std::size_t GetHash(const Parts&... parts)
{
    std::size_t hash = 0;
    (AddToHash(hash, parts), ...);
    return hash;
}

TEST(HashAccumulatorTest, EqualPartsHashAlike)
{
    EXPECT_EQ(GetHash(1, 2.5, "text"), GetHash(1, 2.5, std::string("text")));
    EXPECT_EQ(GetHash(0.0), GetHash(-0.0));
}

TEST(HashAccumulatorTest, DifferentPartsHashApart)
{
    EXPECT_NE(GetHash("ab", "c"), GetHash("a", "bc"));
    EXPECT_NE(GetHash(1, 2), GetHash(2, 1));
    EXPECT_NE(GetHash(std::string(7, '\0')), GetHash(std::string(8, '\0')));
}

TEST(HashAccumulatorTest, NeighboursSpreadOverBuckets)
{
    // 4096 neighbouring keys in 4096 buckets leave about 1 - 1/e of them used if the low bits are as good as chance.
    std::unordered_set<std::size_t> used;
    for (int x = 0; x < 64; ++x) {
        for (int y = 0; y < 64; ++y)
            used.insert(GetHash(x, y * 0.0625) % 4096);
    }
    EXPECT_NEAR(static_cast<double>(used.size()), 4096 * 0.632, 100);
}

} // namespace
