#include <Kernel/Consolidated.h>
#include <Kernel/HashAccumulator.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

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

    std::size_t GetHash() const override
    {
        std::size_t hash = 0;
        Kernel::AddToHash(hash, value / 4);
        return hash;
    }
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

} // namespace
