#include <Quillet/GroupObject.h>

namespace Quillet {

void GroupObject::ConvertTextDecorations() {}

bool GroupObject::TryTextDecoration(const PathObject&)
{
    return false;
}

void GroupObject::ReorderText() {}

void GroupObject::CombineTextLines() {}

void GroupObject::IsolateAdjacentColumns() {}

void GroupObject::MergeAdjacentColumns() {}

void GroupObject::SetParagraphs()
{
    UpdateBBox();
}

void GroupObject::IsolateHeadersFooters() {}

} // namespace Quillet
