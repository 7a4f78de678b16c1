// How the lines of a column become paragraphs.

#include "text/Paragraph.h"

#include <Quillet/ColumnObject.h>

#include <utility>

namespace Quillet {

void ColumnObject::SetParagraphs()
{
    for (const Kernel::Counted<TextLineObject>& line : lines)
        line->OnLineComplete();
    if (lines.empty()) return;

    Paragraphs paragraphs{Kernel::MakeCounted<Paragraph>(nullptr)};
    for (std::size_t i = 0; i < lines.size(); ++i) {
        Paragraph& last = *paragraphs.back();
        const Paragraph::AddAction action = last.GetAddAction(*lines[i]);
        if (action == Paragraph::AddAction::KeepFirst) {
            i -= last.lines.size() - 1;
            last.RemoveFrom(1);
        }
        if (action != Paragraph::AddAction::Add) paragraphs.push_back(Kernel::MakeCounted<Paragraph>(&last));
        paragraphs.back()->Add(lines[i]);
    }

    SetListCandidates(paragraphs);
    const Paragraph::Edges edges(lines);
    for (const auto& paragraph : paragraphs) {
        paragraph->SetAlign(edges);
        paragraph->ApplyWordSpace();
    }
    constexpr double c_tabStep = 0.1;
    FrequencyMap tabs(c_tabStep);
    for (const auto& paragraph : paragraphs)
        paragraph->GetTabStops(tabs);
    const Rect box = GetBaseStoryFrameBox();
    for (const auto& paragraph : paragraphs)
        paragraph->OnComplete(box, tabs);
    SetListStyles(paragraphs);
    SimplifyParagraphs(paragraphs);
}

void ColumnObject::SimplifyParagraphs(Paragraphs& paragraphs)
{
    // Those that are split off are kept beside the others: who comes behind them knows the paragraph that was whole.
    Paragraphs simplified;
    for (const auto& paragraph : paragraphs) {
        Kernel::Counted<Paragraph> part = paragraph;
        while (part) {
            simplified.push_back(part);
            part = part->TrySplit();
        }
    }
    for (const auto& paragraph : simplified)
        paragraph->Simplify();
    paragraphs = std::move(simplified);
}

namespace {

/// The alignment of all lines; `Mixed` if they differ.
Story::AlignX::Type GetCommonAlign(const ColumnObject::Lines& lines)
{
    const Story::AlignX::Type align = lines.front()->paragraphAtts->GetAlignment();
    for (const auto& line : lines) {
        if (line->paragraphAtts->GetAlignment() != align) return Story::AlignX::Mixed;
    }
    return align;
}

/// Widens what the host's own measures of a line give, on the sides where an alignment lets the text grow.
void Widen(Object::Rect& box, Story::AlignX::Type align, double slack)
{
    switch (align) {
    case Story::AlignX::Centre:
    case Story::AlignX::JustifiedCentre:
    case Story::AlignX::JustifiedAll:
        box.left -= slack * 0.5;
        box.right += slack * 0.5;
        break;
    case Story::AlignX::Right:
    case Story::AlignX::JustifiedRight:
        box.left -= slack;
        break;
    default:
        box.right += slack;
    }
}

} // namespace

Object::Rect ColumnObject::GetStoryFrameBox() const
{
    if (lines.empty() || !lines.front()->paragraphAtts) return GetBaseStoryFrameBox();
    constexpr double c_lineSlack = 0.5;
    constexpr double c_frameSlack = 10;
    Rect box = Rect::MakeEmpty();
    double top = lines.front()->GetGdiPosition().y;
    double bottom = top;
    bool usesWrap = false;
    for (const auto& line : lines) {
        const double x = line->position.x;
        const double y = line->GetGdiPosition().y;
        Rect own{x, y, x + line->GetStoryWidth(), y};
        Widen(own, line->paragraphAtts->GetAlignment(), c_lineSlack);
        box = box.Union(own);
        top = std::min(top, y);
        bottom = std::max(bottom, y);
        usesWrap = usesWrap || line->UsesWrap();
    }
    // Where no line may be broken anew, there is room against the host doing so.
    const Story::AlignX::Type align = GetCommonAlign(lines);
    if (!usesWrap && align <= Story::AlignX::JustifiedRight && align != Story::AlignX::JustifiedCentre)
        Widen(box, align, c_frameSlack);
    box.top = top - GetSpaceAbove();
    box.bottom = bottom + GetSpaceBelow();
    return box;
}

} // namespace Quillet
