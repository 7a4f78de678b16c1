#include "PasswordPrompt.h"

#include "Interrupt.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <utility>

#include <fcntl.h>
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

/// Hides what is typed, and holds back signals that would leave the terminal like that. In readpassphrase() a signal
/// that comes between the prompt and the wait for the first key is lost, and Ctrl-C with it.
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

std::optional<std::string> ReadPasswordFile(const std::string& path)
{
    // Far more than counts in any password; a device may go on for ever.
    constexpr std::size_t c_maxLength = 1 << 16;
    // Without O_NONBLOCK, opening a pipe waits for its writer, whatever signals come.
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (descriptor < 0) return std::nullopt;
    std::string text;
    char buffer[1024];
    ssize_t count = 0;
    do {
        if (!Interrupt::WaitFor(descriptor, POLLIN)) {
            count = -1;
            break;
        }
        count = read(descriptor, buffer, sizeof buffer);
        if (count > 0) text.append(buffer, static_cast<std::size_t>(count));
        const bool isToRepeat = count < 0 && (errno == EINTR || errno == EAGAIN);
        if (isToRepeat) count = 1;
    } while (count > 0 && text.size() < c_maxLength && text.find('\n') == text.npos);
    close(descriptor);
    if (count < 0) return std::nullopt;
    text.resize(std::min(text.find('\n'), text.size()));
    if (!text.empty() && text.back() == '\r') text.pop_back();
    return text;
}

} // namespace Host
