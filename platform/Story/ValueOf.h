#pragma once

#include <Kernel/Counted.h>

#include <cstddef>

namespace Story {

/// Whether two objects, each of which may be null, have the same value, wherever they lie.
template <typename T>
bool AreSame(const Kernel::Counted<const T>& a, const Kernel::Counted<const T>& b)
{
    return a == b || (a && b && *a == *b);
}

/// The hash that goes with `AreSame`.
template <typename T>
std::size_t GetHashOf(const Kernel::Counted<const T>& object)
{
    return object ? object->GetHash() : 0;
}

} // namespace Story
