#pragma once

#include <Kernel/Export.h>

#include <cstddef>
#include <span>
#include <string_view>

/// The Advanced Encryption Standard (FIPS 197) in cipher block chaining mode.
namespace Kernel::AES {

constexpr std::size_t c_blockSize = 16;
constexpr std::size_t c_maxKeySize = 32;

/// What stands behind the data in its last block.
enum class Filler {
    None,  ///< Nothing: all blocks are data.
    Count, ///< From 1 to 16 bytes that each hold their number (RFC 8018, 6.1.1); anything else is taken for data.
};

/// Decrypts all whole blocks of `in`; bytes behind them are dropped. Gives the size of the data, at most that of `in`.
///
/// The key has 16 bytes, or 32 if it is longer than 16; it is cut or filled with zeros. So is the initial vector, to a
/// block. `out` has room for all of `in`, and may overlap it in any way.
QUILLET_API std::size_t Decrypt(char* out, std::string_view in, std::string_view key, std::string_view initialVector,
                                Filler filler);

/// Encrypts the whole blocks of `bytes` in place.
QUILLET_API void Encrypt(std::span<char> bytes, std::string_view key, std::string_view initialVector);

} // namespace Kernel::AES
