#pragma once

namespace Host {

/// What the command tells the shell. Scripts read it.
enum ExitStatus : int {
    ExitDone = 0, ///< Recoverable faults included.
    ExitCommandLine = 2,
    ExitNotOpened = 3,
    ExitPassword = 4, ///< One is needed, or the one given does not fit.
    ExitNotWritten = 5,
    ExitPageFailed = 6, ///< Or it is not whole; what there is of it is written, and so are the other pages.
    ExitInterrupted = 130,
};

} // namespace Host
