#include "text/Paragraph.h"

#include <Story/TabStops.h>

namespace Quillet {

using namespace Story::ParagraphAtt;

namespace {

/// Text that is set from the left; elsewhere the place of a gap says nothing.
bool CanHaveTabs(Story::AlignX::Type align)
{
    return align == Story::AlignX::Left || align == Story::AlignX::Justified;
}

} // namespace

void Paragraph::GetTabStops(FrequencyMap& tabs) const
{
    if (!CanHaveTabs(GetAlignX())) return;
    for (const auto& line : lines)
        line->GetTabStops(tabs);
}

void Paragraph::AdjustTabStops(const Rect& rect, const FrequencyMap& tabs)
{
    if (!CanHaveTabs(GetAlignX())) return;
    const auto stops = Kernel::MakeCounted<Story::TabStops>();
    // Where the first line hangs, text engines have a stop at the indent of the others without being told.
    const double indent = atts->Get(LeftIndent);
    const bool isHanging = atts->Get(FirstLineIndent) < indent;
    if (isHanging) stops->Set(Story::TabStop(indent, Story::Tab::Left, false));
    for (const auto& line : lines)
        line->GetTabStops(*stops, rect, tabs);
    for (const auto& line : lines)
        line->ApplyTabStops(*stops, rect);
    if (isHanging) stops->Delete(indent, false);
    atts->Set(Tabs, Kernel::Counted<const Story::TabStops>(stops));
}

} // namespace Quillet
