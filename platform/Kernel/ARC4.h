#pragma once

#include <Kernel/Export.h>

#include <memory>
#include <string_view>

struct arcfour_ctx;

namespace Kernel {

/// The stream cipher RC4: one state, which moves on with each byte. Encrypts and decrypts alike.
class QUILLET_API ARC4
{
public:
    /// A key of 1 to 256 bytes; more are not looked at, and an empty one stands for a zero byte.
    explicit ARC4(std::string_view key);
    ~ARC4();
    ARC4(const ARC4&) = delete;
    ARC4& operator=(const ARC4&) = delete;

    /// `out` has room for all of `in`, and may be the same place.
    void Crypt(char* out, std::string_view in);

private:
    std::unique_ptr<arcfour_ctx> state;
};

} // namespace Kernel
