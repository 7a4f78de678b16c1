#include <Quillet/BitmapObject.h>
#include <Quillet/Page.h>

#include "objects/SoftMask.h"

#include <Raster/DynamicBitmap.h>

namespace Quillet {

BitmapObject::BitmapObject(Kernel::NonCounted<const Page> page) : Object(Kind::Bitmap)
{
    if (page) id = page->MakeObjectId();
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
