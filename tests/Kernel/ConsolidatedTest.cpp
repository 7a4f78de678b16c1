#include <Kernel/Consolidated.h>
#include <Kernel/HashAccumulator.h>
#include <Kernel/NonCounted.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

using Kernel::Consolidated;
using Kernel::Counted;
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

class NamedNumber : public Number
{
public:
    using Number::Number;
};

constexpr int c_threads = 4;

template <typename Work>
void RunInThreads(Work work)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < c_threads; ++i)
        threads.emplace_back(work, i);
    for (std::thread& thread : threads)
        thread.join();
}

TEST(CountedTest, LastOwnerDeletes)
{
    const int before = liveObjects;
    {
        Counted<Number> first = MakeCounted<Number>(1);
        Counted<const Number> second = first;
        Counted<Kernel::Countable> third = std::move(first);
        EXPECT_FALSE(first);
        EXPECT_EQ(second->GetReferenceCount(), 2);
        second = nullptr;
        EXPECT_EQ(Kernel::DynamicCast<Number>(third)->value, 1);
        EXPECT_FALSE(Kernel::DynamicCast<NamedNumber>(third));
        EXPECT_EQ(third->GetReferenceCount(), 1);
        const Number copy(*Kernel::DynamicCast<Number>(third));
        EXPECT_EQ(copy.GetReferenceCount(), 0) << "owners are not copied";
    }
    EXPECT_EQ(liveObjects, before);
}

TEST(CountedTest, CountsAcrossThreads)
{
    const int before = liveObjects;
    Counted<Number> shared = MakeCounted<Number>(1);
    RunInThreads([&shared](int) {
        for (int i = 0; i < 10000; ++i) {
            Counted<Number> mine = shared;
            Counted<Number> other = std::move(mine);
        }
    });
    EXPECT_EQ(shared->GetReferenceCount(), 1);
    shared = nullptr;
    EXPECT_EQ(liveObjects, before);
}

TEST(ConsolidatedTest, EqualValuesBecomeOne)
{
    const std::size_t before = Kernel::InternTable::GetSize();
    {
        const Consolidated<Number> one = Kernel::ConsolidateObjectPostAlloc(Number(1));
        const Consolidated<Number> two = Kernel::ConsolidateObjectSacrifice(MakeCounted<Number>(2));
        EXPECT_NE(one, two) << "their hashes are equal";
        EXPECT_EQ(one, Kernel::ConsolidateObjectSacrifice(MakeCounted<Number>(1)));
        EXPECT_EQ(one, Kernel::ConsolidateObjectPostAlloc(Number(*one)));
        const Consolidated<Number> named = Kernel::ConsolidateObjectPostAlloc(NamedNumber(1));
        EXPECT_NE(one, named) << "another type is another value";
        EXPECT_EQ(Kernel::InternTable::GetSize(), before + 3);
    }
    EXPECT_EQ(Kernel::InternTable::GetSize(), before) << "what nobody holds is dropped";
    EXPECT_FALSE(Kernel::ConsolidateObjectSacrifice(Counted<Number>()));
}

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

TEST(ConsolidatedTest, InternsAndDropsInThreads)
{
    const int liveBefore = liveObjects;
    const std::size_t tableBefore = Kernel::InternTable::GetSize();
    std::atomic<int> faults{0};
    RunInThreads([&faults](int thread) {
        for (int i = 0; i < 10000; ++i) {
            // Few values, so that one thread often finds what another is about to drop.
            const int value = (i / 8 + thread) % 2;
            const Consolidated<SlowNumber> first = Kernel::ConsolidateObjectPostAlloc(SlowNumber(value));
            if (first->value != value) ++faults;
            if (i % 4 != 0) continue;
            const auto second = Kernel::ConsolidateObjectSacrifice(MakeCounted<SlowNumber>(value));
            if (first != second) ++faults;
        }
    });
    EXPECT_EQ(faults, 0);
    EXPECT_EQ(liveObjects, liveBefore);
    EXPECT_EQ(Kernel::InternTable::GetSize(), tableBefore);
}

} // namespace
