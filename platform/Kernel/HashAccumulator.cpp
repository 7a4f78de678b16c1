#include <Kernel/HashAccumulator.h>

#include <cstring>
#include <random>

namespace Kernel {

namespace {

/// The finaliser of the SplitMix64 generator: every bit of the input reaches every bit of the output.
std::uint64_t Mix(std::uint64_t value)
{
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9u;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBu;
    return value ^ (value >> 31);
}

/// Keeps zeros mixed into zero from staying zero.
constexpr std::uint64_t c_goldenRatio = 0x9E3779B97F4A7C15u;

} // namespace

std::size_t GetHashSeed() noexcept
{
    static const std::size_t seed = [] {
        std::random_device random;
        return static_cast<std::size_t>(random()) << 32 ^ random();
    }();
    return seed;
}

void HashAccumulator::AddToHash(std::size_t& accumulator, const void* data, std::size_t size) noexcept
{
    std::uint64_t hash = Mix(accumulator + c_goldenRatio + size);
    const auto* bytes = static_cast<const unsigned char*>(data);
    while (size > 0) {
        std::uint64_t word = 0;
        const std::size_t count = size < sizeof word ? size : sizeof word;
        std::memcpy(&word, bytes, count);
        hash = Mix((hash ^ word) + c_goldenRatio);
        bytes += count;
        size -= count;
    }
    accumulator = static_cast<std::size_t>(hash);
}

} // namespace Kernel
