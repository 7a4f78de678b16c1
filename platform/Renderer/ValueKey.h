#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <tuple>
#include <type_traits>

namespace Renderer {

/// The bits by which a number counts in an interned value: both zeros are one number, and so is everything that is no
/// number. Plain comparison would let a value that is no number differ from itself, and intern it anew each time.
inline std::uint64_t KeyOf(double number)
{
    if (number == 0) return 0;
    return std::bit_cast<std::uint64_t>(number == number ? number : std::numeric_limits<double>::quiet_NaN());
}

/// The hash of a tuple whose elements have a `std::hash`.
template <typename... Elements>
std::size_t HashOf(const std::tuple<Elements...>& key)
{
    std::uint64_t hash = 0x9e3779b97f4a7c15u;
    const auto add = [&hash](const auto& element) {
        using Element = std::remove_cvref_t<decltype(element)>;
        hash ^= std::hash<Element>{}(element);
        // std::hash leaves numbers as they are; without mixing, the many equal digits of colours would collide.
        hash *= 0xff51afd7ed558ccdu;
        hash ^= hash >> 32;
    };
    std::apply([&add](const auto&... elements) { (add(elements), ...); }, key);
    return hash;
}

} // namespace Renderer
