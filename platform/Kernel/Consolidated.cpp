#include <Kernel/Consolidated.h>

#include <array>
#include <mutex>
#include <unordered_map>

namespace Kernel {

namespace {

/// Values spread over shards by hash, so that pages built side by side seldom wait for each other.
struct Shard
{
    std::mutex mutex;
    std::unordered_multimap<std::size_t, const Consolidatable*> values;
};

constexpr std::size_t c_shardCount = 16;

std::array<Shard, c_shardCount>& GetShards()
{
    // Never destroyed: values with static storage may be released after any destructor of ours has run.
    static auto& shards = *new std::array<Shard, c_shardCount>;
    return shards;
}

Shard& GetShard(std::size_t hash)
{
    return GetShards()[(hash ^ (hash >> 17)) % c_shardCount];
}

/// The caller holds the shard's lock.
const Consolidatable* FindLocked(const Shard& shard, std::size_t hash, const Consolidatable& value)
{
    auto [first, last] = shard.values.equal_range(hash);
    for (; first != last; ++first) {
        const Consolidatable& candidate = *first->second;
        if (typeid(candidate) == typeid(value) && candidate.IsEqual(value)) return &candidate;
    }
    return nullptr;
}

} // namespace

Counted<const Consolidatable> InternTable::Find(const Consolidatable& value)
{
    const std::size_t hash = value.GetHash();
    Shard& shard = GetShard(hash);
    std::lock_guard lock(shard.mutex);
    return Counted<const Consolidatable>(FindLocked(shard, hash, value));
}

Counted<const Consolidatable> InternTable::Intern(Counted<const Consolidatable> value)
{
    if (value->isInterned.load(std::memory_order_acquire)) return value;
    const std::size_t hash = value->GetHash();
    Shard& shard = GetShard(hash);
    std::lock_guard lock(shard.mutex);
    if (const Consolidatable* found = FindLocked(shard, hash, *value)) return Counted<const Consolidatable>(found);
    shard.values.emplace(hash, value.Get());
    value->isInterned.store(true, std::memory_order_release);
    return value;
}

std::size_t InternTable::GetSize()
{
    std::size_t size = 0;
    for (Shard& shard : GetShards()) {
        std::lock_guard lock(shard.mutex);
        size += shard.values.size();
    }
    return size;
}

void InternTable::Release(const Countable& value) noexcept
{
    // As long as others hold the value the lock is not needed. The last one lets go under the lock, where no other
    // thread can find the value and take a new reference in between.
    int count = value.referenceCount.load(std::memory_order_relaxed);
    while (count > 1) {
        if (value.referenceCount.compare_exchange_weak(count, count - 1, std::memory_order_acq_rel)) return;
    }
    const auto& interned = static_cast<const Consolidatable&>(value);
    const std::size_t hash = interned.GetHash();
    Shard& shard = GetShard(hash);
    {
        std::lock_guard lock(shard.mutex);
        if (value.referenceCount.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
        auto [first, last] = shard.values.equal_range(hash);
        while (first != last && first->second != &interned)
            ++first;
        if (first != last) shard.values.erase(first);
    }
    delete &interned;
}

void Countable::ReleaseInterned() const noexcept
{
    InternTable::Release(*this);
}

} // namespace Kernel
