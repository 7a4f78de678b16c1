#pragma once

#include <Kernel/Export.h>

namespace Kernel {

/// Whether a flag that another thread or a signal handler may set is there and set.
inline bool IsAborted(const bool* flag)
{
    return flag && __atomic_load_n(flag, __ATOMIC_RELAXED);
}

/// Base of long work that its caller can stop.
///
/// The caller owns a flag and gives its address; the work reads it at safe points and stops early, without an error,
/// once it is true. Any thread, or a signal handler, may set it, at any time: it is read as an atomic value. The host
/// stores it as one, through `std::atomic_ref<bool>` for instance.
class QUILLET_API Abortable
{
public:
    Abortable() = default;
    virtual ~Abortable() = default;

    /// `flag` stays the caller's and outlives the work; null means that nothing stops it.
    void SetAbortPointer(const bool* flag) { abortPointer = flag; }

    /// The pointer as set; null by default.
    virtual const bool* GetAbortPointer() const { return abortPointer; }

protected:
    const bool* abortPointer = nullptr;
};

} // namespace Kernel
