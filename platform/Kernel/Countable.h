#pragma once

#include <Kernel/Export.h>

#include <atomic>

namespace Kernel {

/// Base of everything that is held by `Counted`.
///
/// The count starts at 0 and the first `Counted` takes it to 1; the last one to let go deletes the object. Counts are
/// atomic, so the last owner may be on any thread; nothing else about an object is made safe by this.
class QUILLET_API Countable
{
public:
    Countable() = default;
    /// A copy is a new object: nobody holds it yet.
    Countable(const Countable&) noexcept {}
    Countable& operator=(const Countable&) noexcept { return *this; }
    virtual ~Countable() = default;

    void AddReference() const noexcept { referenceCount.fetch_add(1, std::memory_order_relaxed); }

    void ReleaseReference() const noexcept
    {
        if (isInterned.load(std::memory_order_relaxed)) {
            ReleaseInterned();
        } else if (referenceCount.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            Destroy();
        }
    }

    /// How many hold this object now. Tells one thread whether it is the only owner; between threads it is a hint.
    int GetReferenceCount() const noexcept { return referenceCount.load(std::memory_order_acquire); }

private:
    friend class InternTable;

    void ReleaseInterned() const noexcept;
    void Destroy() const noexcept;

    mutable std::atomic<int> referenceCount{0};
    mutable std::atomic<bool> isInterned{false};
};

} // namespace Kernel
