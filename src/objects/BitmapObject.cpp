#include <Quillet/BitmapObject.h>
#include <Quillet/Page.h>

#include "objects/PaintState.h"
#include "objects/SoftMask.h"

#include <Raster/DynamicBitmap.h>

#include <utility>

namespace Quillet {

BitmapObject::BitmapObject() : Object(Kind::Bitmap) {}

BitmapObject::BitmapObject(Kernel::NonCounted<const Page> page, const PaintState& state,
                           Kernel::Counted<const Raster::DynamicBitmap> newBitmap, bool isMaskContext)
    : Object(Kind::Bitmap), bitmap(std::move(newBitmap)), blendMode(state.blendMode),
      opacity(static_cast<float>(state.fillAlpha))
{
    if (page) id = page->MakeObjectId();
    if (!isMaskContext) softMask = state.softMask;

    transform = state.ltCurrent;
    const double width = bitmap ? bitmap->GetWidth() : 0;
    const double height = bitmap ? bitmap->GetHeight() : 0;
    if (width > 0 && height > 0) {
        transform = transform * Params::Translation(0, 1) * Params::Scale(1 / width, -1 / height);
    }
    UpdateBBox();
}

BitmapObject::~BitmapObject() = default;

void BitmapObject::Clear()
{
    bitmap = nullptr;
    Object::Clear();
}

void BitmapObject::UpdateBBox()
{
    const double width = bitmap ? bitmap->GetWidth() : 0;
    const double height = bitmap ? bitmap->GetHeight() : 0;
    SetBBox({0, 0, width, height});
}

Kernel::Counted<Renderer::FillDescriptor> BitmapObject::GetBrushDescriptor() const
{
    return brushDescriptor ? brushDescriptor : Renderer::FillDescriptor::CreateNone();
}

} // namespace Quillet
