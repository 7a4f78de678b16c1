#pragma once

#include <Kernel/Export.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace Raster {

/// The ICC profiles of a machine by their descriptions. Read from the disk once, at the first question; then each
/// profile that is asked for is. Not safe for several threads at once.
class QUILLET_API InstalledProfiles
{
public:
    /// Where this kind of system keeps profiles for all users.
    InstalledProfiles();
    explicit InstalledProfiles(std::vector<std::string> searchedDirectories);

    /// The bytes of the profile with that description; empty if there is none. Of several, the first by directory and
    /// path.
    std::vector<std::uint8_t> Find(const std::string& description);

private:
    void Scan();

    std::vector<std::string> directories;
    std::map<std::string, std::string> pathByDescription;
    bool isScanned = false;
};

} // namespace Raster
