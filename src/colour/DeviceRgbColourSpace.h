#pragma once

#include "colour/DeviceColourSpace.h"

namespace Quillet {

class QUILLET_API DeviceRgbColourSpace : public DeviceColourSpace
{
public:
    int GetComponentCount() const override { return 3; }
    int GetFormat() const override { return 2; }
    void AddRasterFormats(RasterFormatPicker& picker, bool isExplicit) const override;
    Kernel::Consolidated<Renderer::Colour> MakeColour(const Colour& colour) const override;
};

} // namespace Quillet
