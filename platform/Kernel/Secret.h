#pragma once

#include <Kernel/Export.h>

#include <span>
#include <string_view>

namespace Kernel {

/// Overwrites bytes that nobody may find in memory later. The compiler does not leave it out.
QUILLET_API void Wipe(std::span<char> bytes);

/// Whether two byte strings are the same. For equal sizes it takes the same time whatever differs.
QUILLET_API bool AreSecretsEqual(std::string_view a, std::string_view b);

/// Wipes a container of bytes at the end of a scope, however it is left.
template <typename Bytes>
class WipeAtEnd
{
public:
    explicit WipeAtEnd(Bytes& wiped) : bytes(wiped) {}
    ~WipeAtEnd() { Wipe(bytes); }
    WipeAtEnd(const WipeAtEnd&) = delete;
    WipeAtEnd& operator=(const WipeAtEnd&) = delete;

private:
    Bytes& bytes;
};

} // namespace Kernel
