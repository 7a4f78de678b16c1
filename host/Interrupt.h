#pragma once

#include <string>

namespace Host::Interrupt {

/// From now on Ctrl-C, or being told to end, sets the flag instead of ending the process; the second time ends it. A
/// reader of our output that goes away, or a file that may grow no more, shows as a failed write.
///
/// No call is restarted after a signal. What may wait for long uses `WaitFor`.
void Install();

/// The flag, for the library to read between operators.
const bool* GetFlag();

bool IsSet();

/// Waits until a descriptor is ready, as `events` has it for poll(), or has failed. False once the flag is set.
bool WaitFor(int descriptor, short events);

/// Waits a moment for something that cannot be waited for. False once the flag is set.
bool Pause();

/// The file that the second signal removes; empty for none. Set before it is made, so that it is never left.
void SetUnfinishedFile(const std::string& path) noexcept;

} // namespace Host::Interrupt
