#include "OutputFile.h"

#include "Interrupt.h"
#include "WriteAll.h"
#include "exporters/LongText.h"

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Host {

namespace {

constexpr std::size_t c_flushSize = 1 << 16;
/// As many as the system follows.
constexpr int c_maxLinks = 40;
/// Random names that may be taken.
constexpr int c_maxTries = 100;
/// Opening it again would start at its beginning, over what others wrote there before us.
constexpr const char* c_standardOutput = "/dev/stdout";

mode_t GetNewFileMode()
{
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

/// The end of a chain of links, which need not exist.
std::filesystem::path FollowLinks(std::filesystem::path path)
{
    std::error_code error;
    for (int i = 0; i < c_maxLinks && std::filesystem::is_symlink(path, error); ++i) {
        path = path.parent_path() / std::filesystem::read_symlink(path, error);
    }
    return path;
}

} // namespace

OutputFile::OutputFile(const std::string& path)
{
    pending.reserve(c_flushSize);
    Open(path);
    if (descriptor < 0) failure = errno;
}

OutputFile::~OutputFile()
{
    Discard();
}

bool OutputFile::IsStream(const std::string& path)
{
    std::error_code error;
    return path == c_standardOutput || std::filesystem::is_other(path, error);
}

void OutputFile::Open(const std::string& path)
{
    // A link keeps pointing where it points; the file behind it is replaced.
    target = FollowLinks(path).string();
    struct stat info = {};
    const bool isThere = stat(path.c_str(), &info) == 0;
    if (!isThere && errno != ENOENT) return;
    if (path == c_standardOutput) {
        descriptor = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0);
    } else if (isThere && !S_ISREG(info.st_mode)) {
        OpenStream(path, S_ISFIFO(info.st_mode));
    } else if (!isThere) {
        OpenBeside(GetNewFileMode());
    } else if (access(path.c_str(), W_OK) == 0) {
        OpenBeside(info.st_mode & 0777);
    }
}

void OutputFile::OpenStream(const std::string& path, bool isPipe)
{
    // Without O_NONBLOCK, the call waits for somebody at the other end of a pipe, whatever signals come.
    do {
        descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
        if (descriptor >= 0 || errno != ENXIO || !isPipe) return;
    } while (Interrupt::Pause());
    errno = EINTR;
}

void OutputFile::OpenBeside(mode_t mode)
{
    const auto folder = std::filesystem::path(target).parent_path();
    for (int tries = 0; tries < c_maxTries && descriptor < 0; ++tries) {
        std::uint64_t number = 0;
        if (getrandom(&number, sizeof number, GRND_NONBLOCK) < 0) number = static_cast<unsigned>(getpid() + tries);
        // mkstemp would make the file before anybody knows its name.
        temporary = (folder / (".quillet-" + std::to_string(number))).string();
        Interrupt::SetUnfinishedFile(temporary);
        descriptor = open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (descriptor < 0) Interrupt::SetUnfinishedFile({});
        if (descriptor < 0 && errno != EEXIST) break;
    }
    if (descriptor >= 0) {
        fchmod(descriptor, mode);
    } else {
        temporary.clear();
    }
}

void OutputFile::Write(std::string_view text)
{
    if (pending.size() + text.size() > c_flushSize) Flush();
    if (text.size() > c_flushSize) {
        Put(text);
    } else {
        pending += text;
    }
}

void OutputFile::Write(const LongText& text)
{
    for (const std::string_view block : text.GetBlocks())
        Write(block);
}

void OutputFile::Flush()
{
    Put(pending);
    pending.clear();
}

void OutputFile::Put(std::string_view text)
{
    if (IsGood()) failure = WriteAll(descriptor, text);
}

bool OutputFile::Commit()
{
    Flush();
    if (IsGood() && close(std::exchange(descriptor, -1)) != 0) failure = errno;
    if (IsGood() && !temporary.empty()) {
        std::error_code error;
        std::filesystem::rename(temporary, target, error);
        failure = error.value();
        if (IsGood()) {
            Interrupt::SetUnfinishedFile({});
            temporary.clear();
        }
    }
    Discard();
    return IsGood();
}

void OutputFile::Discard() noexcept
{
    if (descriptor >= 0) close(std::exchange(descriptor, -1));
    if (temporary.empty()) return;
    unlink(temporary.c_str());
    temporary.clear();
    Interrupt::SetUnfinishedFile({});
}

std::string OutputFile::GetFailure() const
{
    return std::generic_category().message(failure);
}

} // namespace Host
