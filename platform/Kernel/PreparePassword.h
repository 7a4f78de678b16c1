#pragma once

#include <Kernel/Export.h>

#include <optional>
#include <string>

namespace Kernel {

/// A password as SASLprep (RFC 4013) wants it compared, in UTF-8; nothing for one with characters that it prohibits,
/// and for text that is not UTF-8. Characters that Unicode had not assigned then are kept, as for a query.
QUILLET_API std::optional<std::string> PreparePassword(const std::string& utf8);

} // namespace Kernel
