#include <Kernel/Consolidated.h>

#include <Kernel/HashAccumulator.h>

#include <array>
#include <mutex>
#include <utility>
#include <vector>

namespace Kernel {

/// Values spread over shards by hash, so that pages built side by side seldom wait for each other. A shard is a hash
/// table whose chains run through the values themselves: interning allocates nothing for each.
class InternTable::Shard
{
public:
    std::mutex mutex;

    // The caller holds the lock.

    const Consolidatable* Find(std::size_t hash, const Consolidatable& value) const
    {
        if (heads.empty()) return nullptr;
        for (const Consolidatable* found = GetHead(hash); found; found = found->nextInterned) {
            if (found->internedHash == hash && typeid(*found) == typeid(value) && found->IsEqual(value)) return found;
        }
        return nullptr;
    }

    void Add(std::size_t hash, const Consolidatable& value)
    {
        if (size == heads.size()) Grow();
        value.internedHash = hash;
        value.nextInterned = std::exchange(GetHead(hash), &value);
        ++size;
    }

    void Remove(const Consolidatable& value)
    {
        const Consolidatable** place = &GetHead(value.internedHash);
        while (*place != &value)
            place = &(*place)->nextInterned;
        *place = value.nextInterned;
        --size;
    }

    std::size_t GetSize() const { return size; }

private:
    // The lowest bits choose the shard.
    const Consolidatable*& GetHead(std::size_t hash) { return heads[hash / c_count & (heads.size() - 1)]; }
    const Consolidatable* GetHead(std::size_t hash) const { return heads[hash / c_count & (heads.size() - 1)]; }

    void Grow()
    {
        constexpr std::size_t c_smallest = 64;
        std::vector<const Consolidatable*> larger(heads.empty() ? c_smallest : 2 * heads.size());
        const std::vector<const Consolidatable*> chains = std::exchange(heads, std::move(larger));
        for (const Consolidatable* value : chains) {
            while (value) {
                const Consolidatable* const next = std::exchange(value->nextInterned, GetHead(value->internedHash));
                GetHead(value->internedHash) = value;
                value = next;
            }
        }
    }

    /// A power of two of them.
    std::vector<const Consolidatable*> heads;
    std::size_t size = 0;

public:
    static constexpr std::size_t c_count = 16;
    static Shard& Get(std::size_t hash) { return GetAll()[hash % c_count]; }
    static std::array<Shard, c_count>& GetAll()
    {
        // Never destroyed: values with static storage may be released after any destructor of ours has run.
        static auto& shards = *new std::array<Shard, c_count>;
        return shards;
    }
    /// With all its bits mixed, whatever the value's own hash is like.
    static std::size_t GetHash(const Consolidatable& value)
    {
        std::size_t hash = 0;
        AddToHash(hash, value.GetHash());
        return hash;
    }
};

Counted<const Consolidatable> InternTable::Find(const Consolidatable& value)
{
    const std::size_t hash = Shard::GetHash(value);
    Shard& shard = Shard::Get(hash);
    std::lock_guard lock(shard.mutex);
    return Counted<const Consolidatable>(shard.Find(hash, value));
}

Counted<const Consolidatable> InternTable::Intern(Counted<const Consolidatable> value)
{
    if (value->isInterned.load(std::memory_order_acquire)) return value;
    const std::size_t hash = Shard::GetHash(*value);
    Shard& shard = Shard::Get(hash);
    std::lock_guard lock(shard.mutex);
    if (const Consolidatable* found = shard.Find(hash, *value)) return Counted<const Consolidatable>(found);
    shard.Add(hash, *value);
    value->isInterned.store(true, std::memory_order_release);
    return value;
}

std::size_t InternTable::GetSize()
{
    std::size_t size = 0;
    for (Shard& shard : Shard::GetAll()) {
        std::lock_guard lock(shard.mutex);
        size += shard.GetSize();
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
    Shard& shard = Shard::Get(interned.internedHash);
    {
        std::lock_guard lock(shard.mutex);
        if (value.referenceCount.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
        shard.Remove(interned);
    }
    delete &interned;
}

void Countable::ReleaseInterned() const noexcept
{
    InternTable::Release(*this);
}

} // namespace Kernel
