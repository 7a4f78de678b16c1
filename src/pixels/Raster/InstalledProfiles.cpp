#include <Raster/InstalledProfiles.h>

#include <Kernel/ToLowerCase.h>
#include <Raster/ProfileDescription.h>

#include <lcms2.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <utility>

namespace Raster {

namespace {

namespace fs = std::filesystem;

/// Profiles for printers reach a few megabytes; machines have some hundreds of them.
constexpr std::uintmax_t c_maxFileSize = 32u << 20;
constexpr std::size_t c_maxFileCount = 4096;

bool IsProfileFile(const fs::directory_entry& entry)
{
    std::error_code error;
    const std::string extension = Kernel::ToLowerCase(entry.path().extension().string());
    return (extension == ".icc" || extension == ".icm") && entry.is_regular_file(error) &&
           entry.file_size(error) <= c_maxFileSize;
}

/// In order, so that the first of equal names is the same on every run.
std::vector<std::string> ListProfiles(const std::string& directory)
{
    std::vector<std::string> paths;
    std::error_code error;
    fs::recursive_directory_iterator entry(directory, fs::directory_options::skip_permission_denied, error);
    for (; !error && entry != fs::recursive_directory_iterator() && paths.size() < c_maxFileCount;
         entry.increment(error)) {
        if (IsProfileFile(*entry)) paths.push_back(entry->path().string());
    }
    std::ranges::sort(paths);
    return paths;
}

std::string ReadDescription(const std::string& path)
{
    // Reads the header and the directory of tags, and the one tag that is asked for.
    void* const profile = cmsOpenProfileFromFile(path.c_str(), "r");
    if (!profile) return {};
    std::string description = GetProfileDescription(profile);
    cmsCloseProfile(profile);
    return description;
}

} // namespace

InstalledProfiles::InstalledProfiles()
    : InstalledProfiles({"/usr/share/color/icc", "/usr/local/share/color/icc", "/var/lib/color/icc",
                         "/Library/ColorSync/Profiles", "/System/Library/ColorSync/Profiles"})
{}

InstalledProfiles::InstalledProfiles(std::vector<std::string> searchedDirectories)
    : directories(std::move(searchedDirectories))
{}

void InstalledProfiles::Scan()
{
    isScanned = true;
    for (const std::string& directory : directories) {
        for (const std::string& path : ListProfiles(directory)) {
            std::string description = ReadDescription(path);
            if (!description.empty()) pathByDescription.try_emplace(std::move(description), path);
        }
    }
}

std::vector<std::uint8_t> InstalledProfiles::Find(const std::string& description)
{
    if (!isScanned) Scan();
    const auto found = pathByDescription.find(description);
    if (found == pathByDescription.end()) return {};
    std::ifstream file(found->second, std::ios::binary);
    std::vector<std::uint8_t> bytes;
    char buffer[65536];
    while (bytes.size() <= c_maxFileSize && (file.read(buffer, sizeof buffer), file.gcount() > 0))
        bytes.insert(bytes.end(), buffer, buffer + file.gcount());
    return bytes;
}

} // namespace Raster
