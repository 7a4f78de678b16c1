#include "CommandLine.h"
#include "LargePages.h"

#include <Kernel/FontCache.h>

#include <cstdlib>
#include <filesystem>

namespace {

/// As the XDG Base Directory Specification has it; empty where there is no such place.
std::filesystem::path GetCacheDirectory()
{
    const char* const named = std::getenv("XDG_CACHE_HOME");
    if (named && *named == '/') return std::filesystem::path(named) / "quillet";
    const char* const home = std::getenv("HOME");
    return home && *home == '/' ? std::filesystem::path(home) / ".cache" / "quillet" : std::filesystem::path();
}

} // namespace

int main(int argc, char** argv)
{
    Host::UseLargePages();
    Kernel::FontCache::KeepIn(GetCacheDirectory());
    return Host::RunCommandLine(argc, argv);
}
