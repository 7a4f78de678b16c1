#include "text/Paragraph.h"

#include <Story/GlyphString.h>

#include <algorithm>
#include <limits>

namespace Quillet {

using namespace Story::ParagraphAtt;

namespace {

/// The marker of a line without the space behind it, and that space.
struct MarkerWidths
{
    MarkerWidths(const TextLineObject& line, const ListAtt& att)
    {
        const auto count =
            std::min(static_cast<std::ptrdiff_t>(att.charCount), static_cast<std::ptrdiff_t>(line.chars.size()));
        if (count < 1) return;
        const auto last = line.chars.begin() + (count - 1);
        marker = line.GetWidth(line.chars.begin(), last);
        space = last->width;
    }

    double marker = 0;
    double space = 0;
};

} // namespace

const ListAtt& Paragraph::GetListCandidate() const
{
    return *lines.front()->GetListCandidate();
}

bool Paragraph::IsCompatibleList(const Paragraph& other) const
{
    return lines.front()->IsCompatibleList(other.GetListCandidate());
}

bool Paragraph::IsListDone() const
{
    return GetListCandidate().isDone;
}

void Paragraph::SetIsListDone(bool isDone)
{
    lines.front()->SetIsListDone(isDone);
}

Paragraph::Range Paragraph::GetListPosition() const
{
    const TextLineObject& line = *lines.front();
    return {line.position.x, line.position.x + MarkerWidths(line, GetListCandidate()).marker};
}

void Paragraph::SetListStyle(Story::AlignX::Type align, Story::NumberFormat format, bool isFirst, bool isAdjacent,
                             const std::string& styleName)
{
    const ListAtt& marker = GetListCandidate();
    const auto list = Kernel::MakeCounted<Story::ListAtt>(marker.type);
    Story::GlyphString string;
    if (marker.prefix != 0) string.AddChar32(marker.prefix);
    if (marker.type == Story::ListType::Number) string.Add(Story::ListNumberGlyph::EncodeLevel(0));
    if (marker.suffix != 0) string.AddChar32(marker.suffix);
    string.AddChar32(U'\t');

    if (marker.type == Story::ListType::Bullet) {
        list->SetBulletString(string);
    } else {
        list->SetNumberString(string);
        list->SetNumberFormat(format);
        list->SetRestartNumberingType(isAdjacent ? Story::RestartNumberingType::Both
                                                 : Story::RestartNumberingType::AtStart);
        if (isFirst) {
            // A first item that was read as a roman digit counts as the letter that it turned out to be.
            const int value = marker.GetEffectiveValue(format);
            list->SetStartNumberingAt(value == std::numeric_limits<int>::min() ? marker.value : value);
            const auto before = previous ? previous->atts->GetList() : nullptr;
            const bool followsNumber = before && before->type == Story::ListType::Number;
            list->SetIsRestartNumbering(!isAdjacent || followsNumber);
        }
    }

    const MarkerWidths widths(*lines.front(), marker);
    const double start = atts->Get(FirstLineIndent);
    double place = start;
    if (align == Story::AlignX::Centre) place += widths.marker / 2;
    if (align == Story::AlignX::Right) place += widths.marker;
    list->SetAlign(align);
    list->SetTabStopIndent(start + widths.marker + widths.space);
    if (marker.delta) list->SetStyleName(styleName, marker.delta);
    atts->Set(List, Kernel::Counted<const Story::ListAtt>(list));
    atts->Set(FirstLineIndent, place);
    lines.front()->SetListStyleCharCount(marker.charCount);
}

} // namespace Quillet
