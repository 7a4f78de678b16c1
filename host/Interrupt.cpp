#include "Interrupt.h"

#include "ExitStatus.h"

#include <climits>
#include <csignal>

#include <unistd.h>

namespace Host::Interrupt {

namespace {

/// A plain byte is what the library reads; a signal handler may write one that is volatile.
volatile bool s_isInterrupted = false;

/// A signal handler can read no string that may be changing: the bytes behind the flag hold still while it is set.
char s_unfinishedFile[PATH_MAX];
volatile std::sig_atomic_t s_hasUnfinishedFile = 0;

void OnSignal(int)
{
    if (s_isInterrupted) {
        if (s_hasUnfinishedFile) unlink(s_unfinishedFile);
        _exit(ExitInterrupted);
    }
    s_isInterrupted = true;
}

void Catch(int signal)
{
    // A shell makes the commands that it runs in the background deaf to Ctrl-C, and so they stay.
    struct sigaction action = {};
    if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) return;
    action = {};
    action.sa_handler = OnSignal;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
}

} // namespace

void Install()
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        Catch(signal);
    std::signal(SIGPIPE, SIG_IGN);
}

const bool* GetFlag()
{
    return const_cast<const bool*>(&s_isInterrupted);
}

bool IsSet()
{
    return s_isInterrupted;
}

void SetUnfinishedFile(const std::string& path)
{
    s_hasUnfinishedFile = 0;
    if (path.empty() || path.size() >= sizeof s_unfinishedFile) return;
    path.copy(s_unfinishedFile, path.size());
    s_unfinishedFile[path.size()] = 0;
    s_hasUnfinishedFile = 1;
}

} // namespace Host::Interrupt
