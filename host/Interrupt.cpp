#include "Interrupt.h"

#include "ExitStatus.h"

#include <atomic>
#include <climits>
#include <csignal>

#include <poll.h>
#include <unistd.h>

namespace Host::Interrupt {

namespace {

/// A plain byte is what the library reads; we and it do so by atomic operations.
bool s_isInterrupted = false;

/// A signal handler can read no string that may be changing: while it reads one, the next is put into the other.
char s_unfinishedFiles[2][PATH_MAX];
constexpr int c_noFile = -1;
std::atomic<int> s_unfinishedFile = c_noFile;
static_assert(std::atomic<int>::is_always_lock_free);

void OnSignal(int)
{
    if (!__atomic_exchange_n(&s_isInterrupted, true, __ATOMIC_RELAXED)) return;
    const int file = s_unfinishedFile.load();
    if (file != c_noFile) unlink(s_unfinishedFiles[file]);
    _exit(ExitInterrupted);
}

void Catch(int signal)
{
    // A shell makes the commands that it runs in the background deaf to Ctrl-C, and so they stay.
    struct sigaction action = {};
    if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) return;
    action = {};
    action.sa_handler = OnSignal;
    sigaction(signal, &action, nullptr);
}

/// A signal may come just before the wait, or to another thread, and then does not end it: so the flag is looked at
/// every now and then.
constexpr int c_waitMilliseconds = 100;

} // namespace

void Install()
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        Catch(signal);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

const bool* GetFlag()
{
    return &s_isInterrupted;
}

bool IsSet()
{
    return __atomic_load_n(&s_isInterrupted, __ATOMIC_RELAXED);
}

bool WaitFor(int descriptor, short events)
{
    pollfd wanted{descriptor, events, 0};
    while (!IsSet()) {
        if (poll(&wanted, 1, c_waitMilliseconds) > 0) return true;
    }
    return false;
}

bool Pause()
{
    poll(nullptr, 0, c_waitMilliseconds);
    return !IsSet();
}

void SetUnfinishedFile(const std::string& path) noexcept
{
    static int s_next = 0;
    if (path.empty() || path.size() >= PATH_MAX) {
        s_unfinishedFile = c_noFile;
        return;
    }
    s_next = 1 - s_next;
    path.copy(s_unfinishedFiles[s_next], path.size());
    s_unfinishedFiles[s_next][path.size()] = 0;
    s_unfinishedFile = s_next;
}

} // namespace Host::Interrupt
