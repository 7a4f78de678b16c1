#pragma once

#include <Kernel/Export.h>

#include <cstdio>
#include <string>

namespace Kernel {

/// An open regular file, closed at the end of its life. Offsets have 64 bits.
class QUILLET_API File
{
public:
    File() = default;
    File(File&& other) noexcept;
    File& operator=(File&& other) noexcept;
    ~File();

    /// Opens `path` with a mode of `fopen`: "rb", "wb" and the like, and "+" forms. Closes the file open before. False
    /// if the file cannot be opened, or is not a regular one: to open a pipe or a device could wait for ever.
    bool Open(const std::string& path, const char* mode);

    /// False if data still in the buffer could not be written. Closing a closed file is fine.
    bool Close();

    bool IsOpen() const { return handle != nullptr; }

    /// The C stream; stays this file's. Null if no file is open.
    std::FILE* GetHandle() const { return handle; }

    /// Size in bytes of the regular file at `path`, else -1.
    static long long GetSize(const std::string& path);

private:
    std::FILE* handle = nullptr;
};

} // namespace Kernel
