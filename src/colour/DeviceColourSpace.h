#pragma once

#include "colour/ColourSpace.h"

#include <utility>

namespace Quillet {

/// Base of the three spaces that name the inks or lights of a device.
class QUILLET_API DeviceColourSpace : public ColourSpace
{
public:
    bool IsSpecial() const override { return false; }
    bool CanLoadAsCompressedImage() const override { return true; }
    /// 0 to 1 for each component.
    std::vector<double> GetDefaultDecodeVec(int bitsPerComponent) const override;
    Kernel::Consolidated<Raster::ICCProfile> GetICCProfile() const override { return profile; }
    /// Replaces the profile: the document's output intent says which device is meant.
    void SetICCProfile(Kernel::Consolidated<Raster::ICCProfile> newProfile) { profile = std::move(newProfile); }

    /// Null for a device that the document does not say more about.
    Kernel::Consolidated<Raster::ICCProfile> profile;
};

} // namespace Quillet
