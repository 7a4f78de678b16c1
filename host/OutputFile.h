#pragma once

#include <string>
#include <string_view>

#include <sys/types.h>

namespace Host {

class LongText;

/// A file that appears under its name only when it is whole.
///
/// It is written beside its place and renamed into it by `Commit`; without that nothing is left. What is there already
/// and is no regular file, a pipe or device, is written to as it stands. There is one at a time. A signal that wants
/// the command to end (`Interrupt`) makes writing fail.
class OutputFile
{
public:
    /// Waits for a reader of a named pipe.
    explicit OutputFile(const std::string& path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Whether a path leads to something that takes bytes but cannot be replaced.
    static bool IsStream(const std::string& path);

    void Write(std::string_view text);
    void Write(const LongText& text);
    /// False if any of the file could not be written; then there is no file.
    bool Commit();

    /// False as soon as something could not be written.
    bool IsGood() const { return failure == 0; }
    /// The system's words for what went wrong.
    std::string GetFailure() const;

private:
    void Open(const std::string& path);
    void OpenStream(const std::string& path, bool isPipe);
    void OpenBeside(mode_t mode);
    void Flush();
    void Put(std::string_view text);
    void Discard() noexcept;

    std::string target;
    /// Empty for a target that is written directly.
    std::string temporary;
    std::string pending;
    int descriptor = -1;
    /// The system's number of the first error.
    int failure = 0;
};

} // namespace Host
