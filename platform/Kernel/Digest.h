#pragma once

#include <Kernel/Export.h>

#include <string>
#include <string_view>

namespace Kernel {

/// MD5 (RFC 1321): 16 bytes.
namespace MD5 {
QUILLET_API std::string Hash(std::string_view bytes);
}

/// The SHA-2 family (FIPS 180-4): 32, 48 and 64 bytes.
namespace Sha256 {
QUILLET_API std::string Hash(std::string_view bytes);
}
namespace Sha384 {
QUILLET_API std::string Hash(std::string_view bytes);
}
namespace Sha512 {
QUILLET_API std::string Hash(std::string_view bytes);
}

} // namespace Kernel
