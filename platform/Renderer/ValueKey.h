#pragma once

#include <Kernel/HashAccumulator.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <tuple>

namespace Renderer {

/// The bits by which a number counts in an interned value: both zeros are one number, and so is everything that is no
/// number. Plain comparison would let a value that is no number differ from itself, and intern it anew each time.
inline std::uint64_t KeyOf(double number)
{
    if (number == 0) return 0;
    return std::bit_cast<std::uint64_t>(number == number ? number : std::numeric_limits<double>::quiet_NaN());
}

/// The hash of a tuple whose elements `Kernel::AddToHash` takes.
template <typename... Elements>
std::size_t HashOf(const std::tuple<Elements...>& key)
{
    std::size_t hash = Kernel::GetHashSeed();
    std::apply([&hash](const auto&... elements) { (Kernel::AddToHash(hash, elements), ...); }, key);
    return hash;
}

} // namespace Renderer
