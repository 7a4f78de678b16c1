#pragma once

#include <string_view>

namespace Host {

/// Writes all of a text, however long that takes, and stops when a signal wants the command to end. Gives the system's
/// number of what went wrong: 0 for nothing, EINTR for a signal.
int WriteAll(int descriptor, std::string_view text);

/// A line on standard error, from a text without its end.
void PrintLine(std::string_view text);

} // namespace Host
