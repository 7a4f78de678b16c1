#pragma once

namespace Host {

/// Reads the command line, runs its verb and gives the exit status.
int RunCommandLine(int argc, const char* const* argv);

} // namespace Host
