#pragma once

#include "Options.h"

namespace Host {

/// Prints what a document is; gives the exit status.
int RunInfo(const InfoOptions& options);

} // namespace Host
