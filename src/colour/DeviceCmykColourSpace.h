#pragma once

#include "colour/DeviceColourSpace.h"

namespace Quillet {

class QUILLET_API DeviceCmykColourSpace : public DeviceColourSpace
{
public:
    int GetComponentCount() const override { return 4; }
    int GetFormat() const override { return 3; }
    void AddRasterFormats(RasterFormatPicker& picker, bool isExplicit) const override;
    Kernel::Consolidated<Renderer::Colour> MakeColour(const Colour& colour) const override;
};

} // namespace Quillet
