#pragma once

#include <Kernel/Export.h>

namespace Quillet {

/// The version of the library that runs, "1.2.3", which may be newer than the one that a host was built with.
QUILLET_API const char* GetLibraryVersion();

} // namespace Quillet
