#pragma once

#include "Options.h"

namespace Host {

/// Imports a document, a page at a time, and writes it; gives the exit status.
int RunConvert(const ConvertOptions& options);

} // namespace Host
