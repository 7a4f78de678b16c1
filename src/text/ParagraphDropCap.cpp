#include "text/Paragraph.h"

#include <Story/DropCapAtt.h>

namespace Quillet {

void Paragraph::SetDropCap()
{
    TextLineObject& first = *lines.front();
    // Without a line below the cap, nothing but its height tells how many lines it takes.
    if (lines.size() == static_cast<std::size_t>(dropCapLines)) dropCapLines = first.GetDropCapLineCount();
    const double distance = lines.size() > 1 ? lines[1]->position.x - first.GetDropCapLeft() : 0;
    atts->Set(Story::ParagraphAtt::DropCap, first.RemoveDropCap(distance, dropCapLines));
}

} // namespace Quillet
