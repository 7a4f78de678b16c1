#include <Raster/ICCProfile.h>

#include <functional>
#include <string_view>
#include <utility>

namespace Raster {

ICCProfile::ICCProfile(std::vector<std::uint8_t> profileBytes, ColourSpace profileModel, std::string profileName)
    : bytes(std::move(profileBytes)), model(profileModel), name(std::move(profileName)),
      hash(std::hash<std::string_view>{}({reinterpret_cast<const char*>(bytes.data()), bytes.size()}))
{}

bool ICCProfile::IsEqual(const Kernel::Consolidatable& other) const
{
    const auto& profile = static_cast<const ICCProfile&>(other);
    return model == profile.model && bytes == profile.bytes;
}

} // namespace Raster
