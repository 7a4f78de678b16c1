#include <Quillet/ColumnObject.h>

namespace Quillet {

ColumnObject::ColumnObject(int newId) : Object(Kind::Column)
{
    id = newId;
}

ColumnObject::~ColumnObject()
{
    for (const Kernel::Counted<TextLineObject>& line : lines) {
        if (line->parent.Get() == this) line->parent = nullptr;
    }
}

void ColumnObject::Clear()
{
    lines.clear();
    Object::Clear();
}

void ColumnObject::UpdateBBox()
{
    Rect box = Rect::MakeEmpty();
    for (const Kernel::Counted<TextLineObject>& line : lines)
        box = box.Union(line->bbox);
    SetBBox(box);
}

} // namespace Quillet
