#include <Kernel/Consolidated.h>
#include <Kernel/HashAccumulator.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <unordered_set>

using Kernel::Consolidated;
using Kernel::MakeCounted;

namespace {

std::atomic<int> liveObjects{0};

/// A value whose hashes collide on purpose, so that equality has to decide.
class Number : public Kernel::Consolidatable
{
public:
    explicit Number(int number) : value(number) { ++liveObjects; }
    Number(const Number& other) : Consolidatable(other), value(other.value) { ++liveObjects; }
    Number& operator=(const Number&) = delete;
    ~Number() override { --liveObjects; }

    std::size_t GetHash() const override { return static_cast<std::size_t>(value / 4); }
    bool IsEqual(const Consolidatable& other) const override
    {
        return value == static_cast<const Number&>(other).value;
    }

    int value;
};

/// Lets other threads run while its hash is asked for, which is just when the table is about to add or to drop it.
class SlowNumber : public Number
{
public:
    using Number::Number;
    std::size_t GetHash() const override
    {
        std::this_thread::yield();
        return Number::GetHash();
    }
};

TEST(ConsolidatedTest, EqualValuesBecomeOne)
{
    const int liveBefore = liveObjects;
    const std::size_t before = Kernel::InternTable::GetSize();
    {
        const Consolidated<Number> one = Kernel::ConsolidateObjectPostAlloc(Number(1));
        const Consolidated<Number> two = Kernel::ConsolidateObjectSacrifice(MakeCounted<Number>(2));
        EXPECT_NE(one, two) << "their hashes are equal";
        EXPECT_EQ(one, Kernel::ConsolidateObjectSacrifice(MakeCounted<Number>(1)));
        EXPECT_EQ(one, Kernel::ConsolidateObjectPostAlloc(Number(*one)));
        const Consolidated<Number> slow = Kernel::ConsolidateObjectPostAlloc(SlowNumber(1));
        EXPECT_NE(one, slow) << "another type is another value";
        EXPECT_EQ(Kernel::InternTable::GetSize(), before + 3);
    }
    EXPECT_EQ(Kernel::InternTable::GetSize(), before) << "what nobody holds is dropped";
    EXPECT_EQ(liveObjects, liveBefore) << "a copy has no owners of its original";
    EXPECT_FALSE(Kernel::ConsolidateObjectSacrifice(Kernel::Counted<Number>()));
}

TEST(ConsolidatedTest, InternsAndDropsInThreads)
{
    const int liveBefore = liveObjects;
    const std::size_t tableBefore = Kernel::InternTable::GetSize();
    std::atomic<int> faults{0};
    const auto run = [&faults](int thread) {
        for (int i = 0; i < 10000; ++i) {
            // Few values, so that one thread often finds what another is about to drop.
            const int value = (i / 8 + thread) % 2;
            const Consolidated<SlowNumber> first = Kernel::ConsolidateObjectPostAlloc(SlowNumber(value));
            if (first->value != value) ++faults;
            if (i % 4 != 0) continue;
            const auto second = Kernel::ConsolidateObjectSacrifice(MakeCounted<SlowNumber>(value));
            if (first != second) ++faults;
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back(run, i);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(faults, 0);
    EXPECT_EQ(liveObjects, liveBefore);
    EXPECT_EQ(Kernel::InternTable::GetSize(), tableBefore);
}

template <typename... Parts>
std::size_t GetHash(const Parts&... parts)
{
    std::size_t hash = 0;
    (Kernel::AddToHash(hash, parts), ...);
    return hash;
}

TEST(HashAccumulatorTest, TellsPartsApart)
{
    EXPECT_EQ(GetHash(1, 2.5, "text"), GetHash(1, 2.5, std::string("text")));
    EXPECT_EQ(GetHash(0.0), GetHash(-0.0));
    EXPECT_NE(GetHash("ab", "c"), GetHash("a", "bc"));
    EXPECT_NE(GetHash(1, 2), GetHash(2, 1));
    EXPECT_NE(GetHash(std::string(7, '\0')), GetHash(std::string(8, '\0')));
    // 4096 neighbouring keys in 4096 buckets leave about 1 - 1/e of them used if the low bits are as good as chance.
    std::unordered_set<std::size_t> used;
    for (int i = 0; i < 4096; ++i)
        used.insert(GetHash(i / 64, i % 64 * 0.0625) % 4096);
    EXPECT_NEAR(static_cast<double>(used.size()), 4096 * 0.632, 100);
}

} // namespace
