#pragma once

#include <cstddef>

namespace Quillet {

/// Memory of a `std::map`, roughly: a node has three pointers and a colour beside its value.
template <typename Map>
std::size_t GetMapBytes(const Map& map)
{
    return map.size() * (sizeof(typename Map::value_type) + 4 * sizeof(void*));
}

} // namespace Quillet
