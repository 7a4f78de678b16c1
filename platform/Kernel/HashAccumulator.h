#pragma once

#include <Kernel/Export.h>

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <type_traits>

namespace Kernel {

/// Builds a hash from the parts of a value. The same bytes in the same steps give the same hash on every run on one
/// kind of machine; the hash is neither for files nor against attackers.
class QUILLET_API HashAccumulator
{
public:
    /// Mixes `size` bytes into `accumulator`, which usually starts from 0. Where one part ends and the next begins
    /// counts, so the parts "ab", "c" and "a", "bc" differ.
    static void AddToHash(std::size_t& accumulator, const void* data, std::size_t size) noexcept;
};

/// What hashes of values that a file brings, and that meet in tables of the whole process, start from: another number
/// in each process, so that no file can be made whose values all meet in one place.
QUILLET_API std::size_t GetHashSeed() noexcept;

template <typename T>
requires std::integral<T> || std::is_enum_v<T>
void AddToHash(std::size_t& accumulator, T value) noexcept
{
    const auto word = static_cast<std::uint64_t>(value);
    HashAccumulator::AddToHash(accumulator, &word, sizeof word);
}

/// Both zeros, being equal, hash alike.
template <std::floating_point T>
void AddToHash(std::size_t& accumulator, T value) noexcept
{
    AddToHash(accumulator, std::bit_cast<std::uint64_t>(value == 0 ? 0.0 : static_cast<double>(value)));
}

inline void AddToHash(std::size_t& accumulator, std::string_view text) noexcept
{
    HashAccumulator::AddToHash(accumulator, text.data(), text.size());
}

/// For whatever has a `std::hash`, pointers to interned values for instance.
template <typename T>
requires(!std::integral<T> && !std::floating_point<T> && !std::is_enum_v<T> &&
         !std::convertible_to<const T&, std::string_view>) void AddToHash(std::size_t& accumulator, const T& value)
{
    AddToHash(accumulator, std::hash<T>{}(value));
}

} // namespace Kernel
