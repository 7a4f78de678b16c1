#include <Kernel/FileSystem.h>

#include <dlfcn.h>

namespace Kernel {

namespace {

namespace fs = std::filesystem;

/// The folder of the shared library, or of the program if it was linked into one. Empty if that cannot be told.
fs::path GetLibraryDirectory()
{
    static const char anchor = 0;
    Dl_info info{};
    if (dladdr(&anchor, &info) == 0 || !info.dli_fname) return {};
    std::error_code error;
    return fs::absolute(info.dli_fname, error).parent_path();
}

fs::path LocateResources()
{
    const fs::path libraryDirectory = GetLibraryDirectory();
    if (fs::path found = FileSystem::FindResourcesDirectory(libraryDirectory); !found.empty()) return found;
    return (libraryDirectory / ".." / "share" / "quillet").lexically_normal();
}

} // namespace

const fs::path& FileSystem::GetResourcesDirectory()
{
    static const fs::path directory = LocateResources();
    return directory;
}

fs::path FileSystem::FindResourcesDirectory(const fs::path& libraryDirectory)
{
    for (const char* prefix : {"..", "../.."}) {
        std::error_code error;
        const fs::path candidate = fs::canonical(libraryDirectory / prefix / "share" / "quillet", error);
        if (!error && fs::is_directory(candidate, error)) return candidate;
    }
    return {};
}

} // namespace Kernel
