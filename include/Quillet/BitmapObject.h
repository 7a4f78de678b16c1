#pragma once

#include <Quillet/Object.h>

#include <Renderer/FillBlendMode.h>
#include <Renderer/FillDescriptor.h>

namespace Raster {
class DynamicBitmap;
}

namespace Quillet {

/// An image. Its own space is that of its pixels: row 0 at the top, one unit a pixel.
class QUILLET_API BitmapObject : public Object
{
public:
    /// Null for an object without pixels.
    Kernel::Counted<const Raster::DynamicBitmap> bitmap;
    /// The paint of a stencil mask; null for an image with colours of its own.
    Kernel::Counted<Renderer::FillDescriptor> brushDescriptor;
    Renderer::FillBlendMode::BlendMode blendMode{};
    /// Of the object as a whole, from 0 to 1.
    float opacity = 1.0F;

    /// Without pixels so far. Takes an id from `page`, which may be null.
    explicit BitmapObject(Kernel::NonCounted<const Page> page = nullptr);
    ~BitmapObject() override;
    BitmapObject(const BitmapObject&) = delete;

    void Clear() override;
    void UpdateBBox() override;

    /// Never null.
    Kernel::Counted<Renderer::FillDescriptor> GetBrushDescriptor() const;
};

} // namespace Quillet
