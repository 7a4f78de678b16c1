#include "WriteAll.h"

#include "Interrupt.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <string>

#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Host {

int WriteAll(int descriptor, std::string_view text)
{
    struct stat info = {};
    const bool isFile = fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode);
    // A pipe that has room has room for so much, so that the call does not wait for more of it.
    const std::size_t step = isFile ? 1 << 20 : PIPE_BUF;
    while (!text.empty()) {
        const bool isReady = isFile ? !Interrupt::IsSet() : Interrupt::WaitFor(descriptor, POLLOUT);
        if (!isReady) return EINTR;
        const ssize_t count = write(descriptor, text.data(), std::min(text.size(), step));
        if (count >= 0) {
            text.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EINTR && errno != EAGAIN) {
            return errno;
        }
    }
    return 0;
}

void PrintLine(std::string_view text)
{
    // In one piece, lest the lines of two writers mix.
    std::string line(text);
    line += '\n';
    WriteAll(STDERR_FILENO, line);
}

} // namespace Host
