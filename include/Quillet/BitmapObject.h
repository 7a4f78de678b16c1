#pragma once

#include <Quillet/Object.h>

#include <Renderer/FillBlendMode.h>
#include <Renderer/FillDescriptor.h>

namespace Raster {
class DynamicBitmap;
}

namespace Quillet {

class PaintState;

/// An image. Its own space is that of its pixels: row 0 at the top, one unit a pixel.
class QUILLET_API BitmapObject : public Object
{
public:
    Kernel::Counted<const Raster::DynamicBitmap> bitmap;
    /// The paint of a stencil mask; null for an image with colours of its own.
    Kernel::Counted<Renderer::FillDescriptor> brushDescriptor;
    Renderer::FillBlendMode::BlendMode blendMode{};
    float opacity = 1.0F;

    /// Whether a bitmap is the picture of a mask, which the state's soft mask does not apply to.
    static constexpr bool c_forPage = false;
    static constexpr bool c_forMask = true;

    BitmapObject();
    /// Places the bitmap on the unit square of the state's user space, takes the state's blend mode and fill alpha and,
    /// unless `isMaskContext`, its soft mask. Without a page, the object has no id; without pixels, it has no extent.
    BitmapObject(Kernel::NonCounted<const Page> page, const PaintState& state,
                 Kernel::Counted<const Raster::DynamicBitmap> newBitmap, bool isMaskContext);
    ~BitmapObject() override;
    BitmapObject(const BitmapObject&) = delete;

    void Clear() override;
    void UpdateBBox() override;

    /// Never null.
    Kernel::Counted<Renderer::FillDescriptor> GetBrushDescriptor() const;
};

} // namespace Quillet
