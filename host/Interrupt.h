#pragma once

#include <string>

namespace Host::Interrupt {

/// From now on Ctrl-C sets the flag instead of ending the process; the second one ends it. A reader of our output that
/// goes away shows as a failed write.
void Install();

/// The flag, for the library to read between operators.
const bool* GetFlag();

bool IsSet();

/// The file that the second Ctrl-C removes; empty for none.
void SetUnfinishedFile(const std::string& path);

} // namespace Host::Interrupt
