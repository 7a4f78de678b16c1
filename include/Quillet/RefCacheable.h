#pragma once

#include <Kernel/Countable.h>

#include <cstddef>

namespace Quillet {

/// Base of what is built once per object of the file and kept with its table entry.
class QUILLET_API RefCacheable : public Kernel::Countable
{
public:
    ~RefCacheable() override = default;

    /// Bytes of memory, roughly, for a kind that a document need not keep: of these it keeps a limited sum, and none
    /// that was cut short. 0 for a kind that it always keeps.
    virtual std::size_t GetDispensableBytes() const { return 0; }
};

} // namespace Quillet
