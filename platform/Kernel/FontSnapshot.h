#pragma once

#include <Kernel/File.h>
#include <Kernel/FontCache.h>

#include <filesystem>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace Kernel {

/// What fontconfig said of the machine, in a file that outlives the process: to read all of its configuration takes
/// longer than to import a page.
///
/// It holds as long as every file and folder that the answers came from is as it was, in an environment that says the
/// same; else it is as if there were none. What cannot be read or written is left alone.
class QUILLET_API FontSnapshot
{
public:
    struct Answers
    {
        std::vector<FontFace> faces;
        /// The number of the face that a question leads to; -1 for none.
        std::unordered_map<std::string, int> matches;
    };

    /// `environment` names and separates the settings under which the answers hold.
    FontSnapshot(const std::filesystem::path& directory, const std::string& environment);

    std::optional<Answers> Read();
    /// Begins anew; `sources` are the files and folders that the answers came from, those that are missing included.
    void Write(const std::vector<FontFace>& faces, const std::vector<std::string>& sources);
    /// One more answer, for a snapshot that was read or written.
    void Add(const std::string& question, int face);

private:
    std::filesystem::path path;
    std::string environment;
    /// What was read or written, even if another process has put a newer one in its place.
    File file;
    /// How many more answers it takes.
    int room = 0;
};

} // namespace Kernel
