#include "PasswordPrompt.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <utility>

#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace Host {

namespace {

volatile std::sig_atomic_t s_signal = 0;

void Remember(int signal)
{
    s_signal = signal;
}

/// Hides what is typed, and holds back signals that would leave the terminal like that.
class HiddenTyping
{
public:
    HiddenTyping()
    {
        s_signal = 0;
        struct sigaction action = {};
        action.sa_handler = Remember;
        sigset_t held;
        sigemptyset(&held);
        for (auto& [signal, old] : signals) {
            sigaction(signal, &action, &old);
            sigaddset(&held, signal);
        }
        sigprocmask(SIG_BLOCK, &held, &oldMask);
        tcgetattr(STDIN_FILENO, &oldModes);
        termios modes = oldModes;
        modes.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        modes.c_cc[VSUSP] = _POSIX_VDISABLE;
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &modes);
    }

    ~HiddenTyping()
    {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &oldModes);
        for (const auto& [signal, old] : signals)
            sigaction(signal, &old, nullptr);
        sigprocmask(SIG_SETMASK, &oldMask, nullptr);
        std::fputc('\n', stderr);
        if (s_signal != 0) std::raise(s_signal);
    }

    /// The next character; false at the end of input and after a signal. Signals come through only while it waits, so
    /// that none is lost between a look at them and the wait.
    bool Read(char& c) const
    {
        pollfd terminal{STDIN_FILENO, POLLIN, 0};
        return ppoll(&terminal, 1, nullptr, &oldMask) == 1 && read(STDIN_FILENO, &c, 1) == 1;
    }

    HiddenTyping(const HiddenTyping&) = delete;
    HiddenTyping& operator=(const HiddenTyping&) = delete;

private:
    std::array<std::pair<int, struct sigaction>, 4> signals{{{SIGINT, {}}, {SIGTERM, {}}, {SIGHUP, {}}, {SIGQUIT, {}}}};
    sigset_t oldMask = {};
    termios oldModes = {};
};

} // namespace

bool CanAskPassword()
{
    return isatty(STDIN_FILENO) != 0 && isatty(STDERR_FILENO) != 0;
}

std::optional<std::string> AskPassword(const std::string& file)
{
    const HiddenTyping hidden;
    std::fprintf(stderr, "Password for %s: ", file.c_str());
    std::string line;
    char c = 0;
    while (hidden.Read(c)) {
        if (c == '\n') return line;
        line += c;
    }
    return std::nullopt;
}

} // namespace Host
