#include <Raster/ProfileDescription.h>

#include <Kernel/StringEncoding.h>

#include <lcms2.h>

#include <vector>

namespace Raster {

std::string GetProfileDescription(void* profile)
{
    const cmsUInt32Number size = cmsGetProfileInfo(profile, cmsInfoDescription, "en", "US", nullptr, 0);
    std::vector<wchar_t> units(size / sizeof(wchar_t) + 1);
    cmsGetProfileInfo(profile, cmsInfoDescription, "en", "US", units.data(), size);
    // One UTF-16 unit in each element, whatever the size of the type.
    std::string bytes;
    for (const wchar_t unit : units) {
        if (unit == 0) break;
        bytes += static_cast<char>(unit >> 8 & 0xff);
        bytes += static_cast<char>(unit & 0xff);
    }
    static const auto utf16 = Kernel::StringEncoding::Make(1201);
    return utf16->ToUnicode(bytes);
}

} // namespace Raster
