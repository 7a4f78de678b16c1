#include "OutputFile.h"

#include "Interrupt.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Host {

namespace {

constexpr std::size_t c_flushSize = 1 << 16;
/// As many as the system follows.
constexpr int c_maxLinks = 40;
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
    Open(path);
    if (descriptor < 0) failure = errno;
    Interrupt::SetUnfinishedFile(temporary);
}

OutputFile::~OutputFile()
{
    Discard();
}

bool OutputFile::IsStream(const std::string& path)
{
    struct stat info = {};
    return path == c_standardOutput ||
           (stat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode) && !S_ISDIR(info.st_mode));
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
        descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    } else if (!isThere) {
        OpenBeside(GetNewFileMode());
    } else if (access(path.c_str(), W_OK) == 0) {
        OpenBeside(info.st_mode & 0777);
    }
}

void OutputFile::OpenBeside(mode_t mode)
{
    temporary = (std::filesystem::path(target).parent_path() / ".quillet-XXXXXX").string();
    descriptor = mkstemp(temporary.data());
    if (descriptor >= 0) {
        fchmod(descriptor, mode);
    } else {
        temporary.clear();
    }
}

void OutputFile::Write(std::string_view text)
{
    pending += text;
    if (pending.size() >= c_flushSize) Flush();
}

void OutputFile::Flush()
{
    std::string_view rest = pending;
    while (IsGood() && !rest.empty()) {
        const ssize_t count = write(descriptor, rest.data(), rest.size());
        if (count >= 0) {
            rest.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            failure = errno;
        }
    }
    pending.clear();
}

bool OutputFile::Commit()
{
    Flush();
    if (IsGood() && close(std::exchange(descriptor, -1)) != 0) failure = errno;
    if (IsGood() && !temporary.empty()) {
        if (std::rename(temporary.c_str(), target.c_str()) != 0) {
            failure = errno;
        } else {
            Interrupt::SetUnfinishedFile({});
            temporary.clear();
        }
    }
    Discard();
    return IsGood();
}

void OutputFile::Discard()
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
