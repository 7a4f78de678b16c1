#pragma once

#include <Kernel/Counted.h>

#include <cstddef>
#include <typeinfo>

namespace Kernel {

/// Base of value objects that are interned: equal values become one shared, immutable object, so that comparing two
/// values is comparing two pointers. To change one, clone it, change the clone and consolidate that.
class QUILLET_API Consolidatable : public Countable
{
public:
    Consolidatable() = default;
    /// A copy is a value of its own, which is not interned.
    Consolidatable(const Consolidatable& other) noexcept : Countable(other) {}
    Consolidatable& operator=(const Consolidatable&) = delete;

    /// Equal values have equal hashes. It starts from `GetHashSeed`, so it is stable within a process only.
    virtual std::size_t GetHash() const = 0;
    /// `other` is of the same dynamic type.
    virtual bool IsEqual(const Consolidatable& other) const = 0;

private:
    friend class InternTable;

    // The table's: what it found the value by, and the next one in its chain.
    mutable std::size_t internedHash = 0;
    mutable const Consolidatable* nextInterned = nullptr;
};

/// The process-wide table of interned values. It owns nothing: a value that nobody holds leaves it.
class QUILLET_API InternTable
{
public:
    /// The interned equal of `value`: an older one if there is one, else `value` itself, which must not change after.
    static Counted<const Consolidatable> Intern(Counted<const Consolidatable> value);
    /// The interned equal of `value` if there is one now, else null.
    static Counted<const Consolidatable> Find(const Consolidatable& value);
    /// How many distinct values are held by somebody now; for tests and benches.
    static std::size_t GetSize();

private:
    friend class Countable;
    class Shard;
    static void Release(const Countable& value) noexcept;
};

/// Pointer to an interned value; null is allowed. Equality is identity.
template <typename T>
class Consolidated
{
public:
    Consolidated() noexcept = default;
    Consolidated(std::nullptr_t) noexcept {}
    template <typename U, typename = std::enable_if_t<std::is_convertible_v<const U*, const T*>>>
    Consolidated(const Consolidated<U>& other) noexcept : value(other.GetCounted())
    {}

    const T* Get() const noexcept { return value.Get(); }
    const T* operator->() const noexcept { return value.Get(); }
    const T& operator*() const noexcept { return *value; }
    explicit operator bool() const noexcept { return static_cast<bool>(value); }
    const Counted<const T>& GetCounted() const noexcept { return value; }

    friend bool operator==(const Consolidated& a, const Consolidated& b) noexcept { return a.value == b.value; }
    friend bool operator==(const Consolidated& a, std::nullptr_t) noexcept { return a.value == nullptr; }

    /// For the two functions below, which alone make these.
    static Consolidated FromInterned(Counted<const T> interned) noexcept
    {
        Consolidated result;
        result.value = std::move(interned);
        return result;
    }

private:
    Counted<const T> value;
};

/// Interns an object that the caller gives up: it becomes the shared one, or goes if an equal one exists. No other
/// thread may hold the object yet.
template <typename T>
Consolidated<std::remove_const_t<T>> ConsolidateObjectSacrifice(Counted<T> object)
{
    using Value = std::remove_const_t<T>;
    if (!object) return {};
    Counted<const Consolidatable> interned = InternTable::Intern(Counted<const Consolidatable>(object));
    return Consolidated<Value>::FromInterned(Counted<const Value>(static_cast<const Value*>(interned.Get())));
}

/// Interns a value and allocates only if no equal one exists yet.
template <typename T>
Consolidated<T> ConsolidateObjectPostAlloc(const T& object)
{
    if (Counted<const Consolidatable> found = InternTable::Find(object)) {
        return Consolidated<T>::FromInterned(Counted<const T>(static_cast<const T*>(found.Get())));
    }
    return ConsolidateObjectSacrifice(Counted<T>(new T(object)));
}

/// Interns a copy of an object that others may go on to change; null for null.
template <typename T>
Consolidated<std::remove_const_t<T>> ConsolidateObjectClone(const Counted<T>& object)
{
    if (!object) return {};
    return ConsolidateObjectPostAlloc<std::remove_const_t<T>>(*object);
}

} // namespace Kernel

template <typename T>
struct std::hash<Kernel::Consolidated<T>>
{
    std::size_t operator()(const Kernel::Consolidated<T>& pointer) const noexcept
    {
        return std::hash<const T*>{}(pointer.Get());
    }
};
