#include <Kernel/File.h>

#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Kernel {

static_assert(sizeof(off_t) == 8, "build with _FILE_OFFSET_BITS=64");

namespace {

/// The flags for `open`, less truncation, or -1 for a mode that `fopen` does not know.
int GetOpenFlags(std::string_view mode)
{
    const int access = mode.find('+') != std::string_view::npos ? O_RDWR : mode.starts_with('r') ? O_RDONLY : O_WRONLY;
    if (mode.starts_with('r')) return access;
    if (mode.starts_with('w')) return access | O_CREAT;
    if (mode.starts_with('a')) return access | O_CREAT | O_APPEND;
    return -1;
}

bool IsRegular(int descriptor)
{
    struct stat status;
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

/// The system would open another file than the one that is named.
bool HasHiddenEnd(const std::string& path)
{
    return path.find('\0') != std::string::npos;
}

/// -1 if there is no regular file to open.
int OpenRegular(const std::string& path, std::string_view mode)
{
    const int flags = GetOpenFlags(mode);
    if (flags < 0 || HasHiddenEnd(path)) return -1;

    // Without O_NONBLOCK, opening a pipe waits for somebody at its other end; on regular files it means nothing.
    const int descriptor = open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0666);
    if (descriptor < 0) return -1;
    const bool mustTruncate = mode.starts_with('w');
    if (IsRegular(descriptor) && (!mustTruncate || ftruncate(descriptor, 0) == 0)) return descriptor;
    close(descriptor);
    return -1;
}

} // namespace

File::File(File&& other) noexcept : handle(std::exchange(other.handle, nullptr)) {}

File& File::operator=(File&& other) noexcept
{
    if (this != &other) {
        Close();
        handle = std::exchange(other.handle, nullptr);
    }
    return *this;
}

File::~File()
{
    Close();
}

bool File::Open(const std::string& path, const char* mode)
{
    Close();
    const int descriptor = OpenRegular(path, mode);
    if (descriptor < 0) return false;
    handle = fdopen(descriptor, mode);
    if (!handle) close(descriptor);
    return handle != nullptr;
}

bool File::Close()
{
    std::FILE* closing = std::exchange(handle, nullptr);
    return !closing || std::fclose(closing) == 0;
}

long long File::GetSize(const std::string& path)
{
    std::error_code error;
    return HasHiddenEnd(path) ? -1 : static_cast<long long>(std::filesystem::file_size(path, error));
}

} // namespace Kernel
