// Which alignment lines had when they were set.

#include "text/Paragraph.h"

#include <algorithm>
#include <cmath>

namespace Quillet {

namespace {

using Story::AlignX::Centre;
using Story::AlignX::Justified;
using Story::AlignX::Left;
using Story::AlignX::Right;

constexpr double c_sameEdge = 1;
/// Few lines say little of themselves, so that the edges of the whole column speak for them.
constexpr std::size_t c_manyLines = 3;
constexpr int c_leastNeed = 3;
/// Of the lines of a column: a right edge at fewer places is one that text was justified to.
constexpr double c_raggedShare = 0.7;

} // namespace

void Paragraph::SetAlign(const Edges& edges)
{
    atts = Story::ParagraphAtts::GetDefault()->Clone();
    for (const Kernel::Counted<TextLineObject>& line : lines)
        line->SetParagraphAtts(atts);
    lines.front()->SetIsParagraphFront(true);
    lines.back()->SetIsParagraphBack(true);
    atts->Set(Story::ParagraphAtt::Alignment, CalcAlign(edges));
    if (!previous) return;
    OnAdjacentAlign(*previous);
    for (Paragraph* other = this; other->previous && other->previous->OnAdjacentAlign(*other);)
        other = other->previous;
}

Story::AlignX::Type Paragraph::CalcAlign(const Edges& edges) const
{
    if (GetTextFidelity() == TextFidelityExact) return Left;
    const auto can = [this](AlignMask bit) { return (alignMask & bit) != 0; };
    if (dropCapLines != 0) return can(AlignJustified) ? Justified : Left;
    if (lines.size() >= c_manyLines) {
        if (can(AlignJustified)) return Justified;
        if (can(AlignCentre)) return Centre;
        return can(AlignRight) ? Right : Left;
    }
    const double rightEdges = static_cast<double>(edges.right.buckets.size());
    if (can(AlignJustified) && edges.left.GetFrequency(left.maximum) >= 2 &&
        edges.right.GetFrequency(rightBeforeLast.GetCentre()) >= 2 &&
        rightEdges < std::max(2.0, edges.right.total * c_raggedShare))
        return Justified;
    int need = edges.left.total / 2;
    if (need < c_leastNeed + 1) need = c_leastNeed;
    if (can(AlignLeft) && edges.left.GetFrequency(left.GetCentre()) >= need) return Left;
    if (!CanRightCenterAlign()) return Left;
    if (can(AlignCentre)) {
        if (edges.centre.GetFrequency(centre.GetCentre()) >= need) return Centre;
        const double middle = (edges.left.GetMinValue() + edges.right.GetMaxValue()) * 0.5;
        if (edges.centre.total >= 2 && std::abs(centre.GetCentre() - middle) <= edges.centre.step) return Centre;
    }
    if (can(AlignRight) && edges.right.GetFrequency(right.GetCentre()) >= need) return Right;
    return Left;
}

bool Paragraph::CanRightCenterAlign() const
{
    const bool hasEndTab = std::ranges::any_of(lines, [](const auto& line) {
        bool hasLeader = false;
        return line->FindEndTab(hasLeader, false) != line->chars.cend();
    });
    return !hasEndTab && GetListCandidate().IsNone();
}

bool Paragraph::OnAdjacentAlign(const Paragraph& other)
{
    const Story::AlignX::Type align = other.GetAlignX();
    if (align == Left || GetAlignX() != Left || (alignMask & (1U << align)) == 0 || lines.size() > 2) return false;
    if (align == Right && !(right.CanAlign(c_sameEdge) && right.CanAlignWith(other.right.GetCentre(), c_sameEdge)))
        return false;
    if (align == Centre && !(centre.CanAlign(c_sameEdge) && centre.CanAlignWith(other.centre.GetCentre(), c_sameEdge)))
        return false;
    atts->Set(Story::ParagraphAtt::Alignment, align);
    return true;
}

} // namespace Quillet
