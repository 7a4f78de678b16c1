#pragma once

#include "colour/ColourSpace.h"

namespace Quillet {

/// Base of the three spaces that name the inks or lights of a device.
class QUILLET_API DeviceColourSpace : public ColourSpace
{
public:
    bool IsSpecial() const override { return false; }
    bool CanLoadAsCompressedImage() const override { return true; }
    /// 0 to 1 for each component.
    std::vector<double> GetDefaultDecodeVec(int bitsPerComponent) const override;
};

} // namespace Quillet
