#pragma once

#include <Kernel/Countable.h>
#include <Kernel/Export.h>

namespace Raster {

/// An image whose pixel format is known at run time only.
class QUILLET_API DynamicBitmap : public Kernel::Countable
{
public:
    /// In pixels. A negative size counts as none.
    DynamicBitmap(int newWidth, int newHeight)
        : width(newWidth < 0 ? 0 : newWidth), height(newHeight < 0 ? 0 : newHeight)
    {}

    int GetWidth() const { return width; }
    int GetHeight() const { return height; }

private:
    int width;
    int height;
};

} // namespace Raster
