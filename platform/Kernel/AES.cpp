#include <Kernel/AES.h>

#include <Kernel/Secret.h>

#include <algorithm>
#include <array>
#include <cstring>

#include <nettle/aes.h>
#include <nettle/cbc.h>

namespace Kernel::AES {

namespace {

using Key = std::array<char, c_maxKeySize>;
using Block = std::array<char, c_blockSize>;

template <typename Bytes>
Bytes Fit(std::string_view text)
{
    Bytes bytes{};
    std::copy_n(text.begin(), std::min(text.size(), bytes.size()), bytes.begin());
    return bytes;
}

std::uint8_t* AsOctets(char* bytes)
{
    return reinterpret_cast<std::uint8_t*>(bytes);
}

template <typename Context>
std::span<char> GetBytes(Context& context)
{
    return {reinterpret_cast<char*>(&context), sizeof context};
}

/// Hands `work` a key schedule, made by one of Nettle's functions, and wipes it.
template <typename Context, typename SetKey, typename Work>
void WithSchedule(std::string_view keyText, SetKey setKey, Work work)
{
    Key key = Fit<Key>(keyText);
    const WipeAtEnd wipeKey(key);
    Context context;
    auto contextBytes = GetBytes(context);
    const WipeAtEnd wipeContext(contextBytes);
    setKey(&context, AsOctets(key.data()));
    work(&context);
}

std::size_t GetFillerSize(std::string_view bytes)
{
    if (bytes.empty()) return 0;
    const auto count = static_cast<unsigned char>(bytes.back());
    if (count == 0 || count > c_blockSize || count > bytes.size()) return 0;
    const std::string_view filler = bytes.substr(bytes.size() - count);
    return std::ranges::all_of(filler, [&](char c) { return c == bytes.back(); }) ? count : 0;
}

} // namespace

std::size_t Decrypt(char* out, std::string_view in, std::string_view key, std::string_view initialVector, Filler filler)
{
    const std::size_t size = in.size() - in.size() % c_blockSize;
    Block vector = Fit<Block>(initialVector);
    // Nettle decrypts in place, or between places that do not overlap.
    if (size > 0) std::memmove(out, in.data(), size);
    const auto run = [&](auto decrypt) {
        return [&, decrypt](auto* context) {
            cbc_decrypt(context, decrypt, AES_BLOCK_SIZE, AsOctets(vector.data()), size, AsOctets(out), AsOctets(out));
        };
    };
    if (key.size() > AES128_KEY_SIZE) {
        WithSchedule<aes256_ctx>(key, aes256_set_decrypt_key,
                                 run(reinterpret_cast<nettle_cipher_func*>(aes256_decrypt)));
    } else {
        WithSchedule<aes128_ctx>(key, aes128_set_decrypt_key,
                                 run(reinterpret_cast<nettle_cipher_func*>(aes128_decrypt)));
    }
    return filler == Filler::Count ? size - GetFillerSize({out, size}) : size;
}

void Encrypt(std::span<char> bytes, std::string_view key, std::string_view initialVector)
{
    const std::size_t size = bytes.size() - bytes.size() % c_blockSize;
    Block vector = Fit<Block>(initialVector);
    const auto run = [&](auto encrypt) {
        return [&, encrypt](auto* context) {
            cbc_encrypt(context, encrypt, AES_BLOCK_SIZE, AsOctets(vector.data()), size, AsOctets(bytes.data()),
                        AsOctets(bytes.data()));
        };
    };
    if (key.size() > AES128_KEY_SIZE) {
        WithSchedule<aes256_ctx>(key, aes256_set_encrypt_key,
                                 run(reinterpret_cast<nettle_cipher_func*>(aes256_encrypt)));
    } else {
        WithSchedule<aes128_ctx>(key, aes128_set_encrypt_key,
                                 run(reinterpret_cast<nettle_cipher_func*>(aes128_encrypt)));
    }
}

} // namespace Kernel::AES
