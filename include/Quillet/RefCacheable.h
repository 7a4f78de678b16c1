#pragma once

#include <Kernel/Countable.h>

namespace Quillet {

/// Base of what is built once per object of the file and kept with its table entry.
class QUILLET_API RefCacheable : public Kernel::Countable
{
public:
    ~RefCacheable() override = default;
};

} // namespace Quillet
