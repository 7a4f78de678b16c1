#include <Kernel/HashAccumulator.h>

#include <cstring>
#include <random>

namespace Kernel {

namespace {

__extension__ using Product = unsigned __int128;

/// Both halves of the product of a value and a secret: what differs in a few bits, differs in all, and nobody who does
/// not know the secret can say how.
std::uint64_t Mix(std::uint64_t value, std::uint64_t secret)
{
    const Product product = static_cast<Product>(value) * secret;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

struct Secret
{
    Secret()
    {
        std::random_device random;
        const auto draw = [&random] { return static_cast<std::uint64_t>(random()) << 32 | random(); };
        start = draw();
        factor = draw() | 1;
    }

    std::uint64_t start;
    std::uint64_t factor;
};

const Secret& GetSecret()
{
    static const Secret secret;
    return secret;
}

} // namespace

void HashAccumulator::AddToHash(std::size_t& accumulator, const void* data, std::size_t size) noexcept
{
    const Secret& secret = GetSecret();
    std::uint64_t hash = Mix((accumulator ^ secret.start) + size, secret.factor);
    const auto* bytes = static_cast<const unsigned char*>(data);
    while (size > 0) {
        std::uint64_t word = 0;
        const std::size_t count = size < sizeof word ? size : sizeof word;
        std::memcpy(&word, bytes, count);
        hash = Mix(hash ^ word ^ secret.start, secret.factor);
        bytes += count;
        size -= count;
    }
    accumulator = static_cast<std::size_t>(hash);
}

} // namespace Kernel
