#include <pixels/ICCManager.h>

#include <cstddef>
#include <utility>

namespace Raster {

namespace {

bool HasPlace(ColourSpace model)
{
    return model > ColourSpace::None && static_cast<int>(model) < c_colourSpaceCount;
}

} // namespace

Kernel::Consolidated<ICCProfile> ICCManager::ICCProfileSet::GetProfileFor(ColourSpace model) const
{
    if (!HasPlace(model)) return nullptr;
    return profiles[static_cast<std::size_t>(model)];
}

void ICCManager::ICCProfileSet::SetProfile(ColourSpace model, Kernel::Consolidated<ICCProfile> profile)
{
    if (HasPlace(model)) profiles[static_cast<std::size_t>(model)] = std::move(profile);
}

Kernel::Consolidated<ICCProfile> ICCManager::ICCProfileSet::GetProfileForFormat(Format format) const
{
    return GetProfileFor(GetColourSpaceOf(format));
}

void ICCManager::ICCProfileSet::SetProfileForFormat(Format format, Kernel::Consolidated<ICCProfile> profile)
{
    SetProfile(GetColourSpaceOf(format), std::move(profile));
}

} // namespace Raster
