#pragma once

#include <Kernel/Consolidated.h>
#include <Kernel/Export.h>
#include <Raster/Format.h>
#include <Raster/ICCManager.h>

#include <array>

namespace Quillet {

/// Finds the richest pixel format that a page uses, and the profile of each colour model.
class QUILLET_API RasterFormatPicker
{
public:
    /// A vote for a format; `None` with a profile is one for the format of the profile's model. The first of the
    /// richest wins. An explicit profile gives way only to another one. Gives the rank of the format picked.
    int Add(Raster::Format used, const Kernel::Consolidated<Raster::ICCProfile>& profile, bool isExplicitUse);
    Raster::Format GetFormat() const { return format; }
    /// `base`, with the profiles found here in place of its own.
    Raster::ICCManager::ICCProfileSet GetProfiles(const Raster::ICCManager::ICCProfileSet& base) const;

    Raster::Format format = Raster::Format::None;
    int rank = 0;
    Raster::ICCManager::ICCProfileSet profiles;
    /// By the number of the model.
    std::array<bool, Raster::c_colourSpaceCount> isExplicit{};

private:
    void AddProfile(const Kernel::Consolidated<Raster::ICCProfile>& profile, bool isExplicitUse);
};

} // namespace Quillet
