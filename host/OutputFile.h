#pragma once

#include <string>
#include <string_view>

#include <sys/types.h>

namespace Host {

/// A file that appears under its name only when it is whole.
///
/// It is written beside its place and renamed into it by `Commit`; without that nothing is left. What is there already
/// and is no regular file, a pipe or device, is written to as it stands. There is one at a time.
class OutputFile
{
public:
    explicit OutputFile(const std::string& path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Whether a path leads to something that takes bytes but cannot be replaced.
    static bool IsStream(const std::string& path);

    void Write(std::string_view text);
    /// False if any of the file could not be written; then there is no file.
    bool Commit();

    /// False as soon as something could not be written.
    bool IsGood() const { return failure == 0; }
    /// The system's words for what went wrong.
    std::string GetFailure() const;

private:
    void Open(const std::string& path);
    void OpenBeside(mode_t mode);
    void Flush();
    void Discard();

    std::string target;
    /// Empty for a target that is written directly.
    std::string temporary;
    std::string pending;
    int descriptor = -1;
    /// The system's number of the first error.
    int failure = 0;
};

} // namespace Host
