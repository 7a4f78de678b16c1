#include "text/Paragraph.h"

#include "document/Limits.h"
#include "text/ForAtts.h"

#include <Quillet/Budget.h>

#include <Renderer/FontMetrics.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace Quillet {

namespace {

/// Edges as far apart are the same.
constexpr double c_sameEdge = 1;
constexpr double c_edgeStep = 1;
constexpr double c_noise = 1e-5;
/// Baselines of a paragraph may differ as much from an even leading.
constexpr double c_leadingTolerance = 0.5;
/// Points, and what is left of a tenth when places that were written in tenths are subtracted.
constexpr double c_lineAbove = 0.1 + 1e-6;
/// Of a size: how far a line may run beyond the others in ragged text.
constexpr double c_maxOverrun = 4;
/// Sizes of fonts are compared in quarters of a point.
constexpr double c_sizeSteps = 4;

/// What text is set in, as far as paragraphs go. Fonts that are the same have the same metrics.
struct Format
{
    const Renderer::FontMetrics* font;
    double size;

    friend bool operator==(const Format&, const Format&) = default;
};

std::vector<Format> GetFormats(const TextLineObject& line)
{
    std::vector<Format> formats;
    for (auto run = line.chars.begin(); run != line.chars.end(); run = GetRunEnd(run, line.chars.end())) {
        const Format format{run->atts->GetFontMetrics().Get(), std::round(run->GetSize() * c_sizeSteps) / c_sizeSteps};
        if (!Budget::Spend(Limits::c_comparisonUnits * formats.size())) break;
        if (std::ranges::find(formats, format) == formats.end()) formats.push_back(format);
    }
    return formats;
}

double GetRight(const TextLineObject& line)
{
    return line.position.x + line.width;
}

double GetCentre(const TextLineObject& line)
{
    return line.position.x + line.width * 0.5;
}

} // namespace

void Paragraph::Range::Add(double value)
{
    minimum = std::min(minimum, value);
    maximum = std::max(maximum, value);
}

bool Paragraph::Range::CanAlignWith(double value, double tolerance) const
{
    return CanAlign(tolerance) && std::abs(value - GetCentre()) <= tolerance;
}

Paragraph::Edges::Edges(const Lines& lines) : left(c_edgeStep), centre(c_edgeStep), right(c_edgeStep)
{
    for (const Kernel::Counted<TextLineObject>& line : lines) {
        left.Add(line->position.x);
        centre.Add(GetCentre(*line));
        right.Add(GetRight(*line));
    }
}

Paragraph::Paragraph(Paragraph* newPrevious) : previous(newPrevious) {}

Paragraph::Paragraph(Paragraph& source, Lines::iterator first)
    : Countable(), leading(source.leading), left(source.left), centre(source.centre), right(source.right),
      rightBeforeLast(source.rightBeforeLast), alignMask(source.alignMask), atts(source.atts)
{
    // The front is the smaller part where a paragraph is split line by line: that one is touched.
    Lines front(std::make_move_iterator(source.lines.begin()), std::make_move_iterator(first));
    source.lines.erase(source.lines.begin(), first);
    lines = std::exchange(source.lines, std::move(front));
    source.atts = atts->Clone();
    for (const Kernel::Counted<TextLineObject>& line : source.lines)
        line->SetParagraphAtts(source.atts);
    lines.front()->SetIsParagraphFront(true);
}

TextFidelity Paragraph::GetTextFidelity() const
{
    return lines.empty() ? TextFidelityExact : lines.front()->GetTextFidelity();
}

Paragraph::AddAction Paragraph::GetAddAction(const TextLineObject& line) const
{
    if (lines.empty()) return AddAction::Add;
    // To look the same, each line is a paragraph of its own.
    if (GetTextFidelity() == TextFidelityExact) return AddAction::New;
    for (const auto test : {&Paragraph::GetLeadingAddAction, &Paragraph::GetAlignAddAction,
                            &Paragraph::GetFormattingAddAction, &Paragraph::GetListStyleAddAction}) {
        const AddAction action = (this->*test)(line);
        if (action != AddAction::Add) return action;
    }
    return AddAction::Add;
}

Paragraph::AddAction Paragraph::GetLeadingAddAction(const TextLineObject& line) const
{
    if (lines.empty()) return AddAction::Add;
    const double gap = line.GetLeading(*lines.back());
    // A line that stands farther away than the paragraph does from the one above belongs to neither.
    if (previous && gap > lines.front()->GetLeading(*previous->lines.back()) + c_lineAbove) return AddAction::New;
    if (lines.size() == 1) return gap >= 0.5 * leading && gap < 2 * leading ? AddAction::Add : AddAction::New;
    if (std::abs(gap - leading) < c_leadingTolerance) return AddAction::Add;
    const double height = lines.front()->textHeight;
    const bool isHeading =
        lines.size() == 2 && gap < leading - c_leadingTolerance && gap >= 0.5 * height && height < leading;
    return isHeading ? AddAction::KeepFirst : AddAction::New;
}

Paragraph::AddAction Paragraph::GetAlignAddAction(const TextLineObject& line) const
{
    if (line.IsDropCap()) return AddAction::New;
    const unsigned mask = GetAlignMask(line);
    if ((alignMask & mask) == 0) return AddAction::New;
    const double limit = right.GetCentre() + lines.back()->textHeight * c_maxOverrun;
    if ((alignMask & AlignLeft) != 0 && GetRight(line) > limit) return AddAction::New;
    if (lines.size() >= 2 && (mask & AlignJustified) == 0 && (alignMask & AlignJustified) != 0) return AddAction::New;
    return AddAction::Add;
}

Paragraph::AddAction Paragraph::GetFormattingAddAction(const TextLineObject& line) const
{
    const std::vector<Format> formats = GetFormats(line);
    const bool isShared = std::ranges::any_of(GetFormats(*lines.back()), [&formats](const Format& format) {
        return Budget::Spend(Limits::c_comparisonUnits * formats.size()) &&
               std::ranges::find(formats, format) != formats.end();
    });
    return isShared ? AddAction::Add : AddAction::New;
}

Paragraph::AddAction Paragraph::GetListStyleAddAction(const TextLineObject& line) const
{
    if (lines.empty()) return AddAction::Add;
    const ListAtt& candidate = *line.GetListCandidate();
    if (candidate.IsNone()) return AddAction::Add;
    const bool isFirst = candidate.type == Story::ListType::Bullet ||
                         (candidate.type == Story::ListType::Number && candidate.value == 1);
    return isFirst || line.IsCompatibleList(GetListCandidate()) ? AddAction::New : AddAction::Add;
}

unsigned Paragraph::GetAlignMask(const TextLineObject& line) const
{
    if (lines.empty()) return AlignAll;
    const double x = line.position.x;
    const double lastRight = GetRight(*lines.back());
    unsigned mask = 0;
    if (dropCapLines >= 1) {
        if (lines.size() > static_cast<std::size_t>(dropCapLines) && !left.CanAlignWith(x, c_sameEdge)) return 0;
        return right.CanAlignWith(lastRight, c_sameEdge) ? AlignLeft | AlignJustified : AlignLeft;
    }
    if (lines.size() == 1) {
        mask = GetRight(line) - c_sameEdge <= right.minimum ? AlignLeft | AlignJustified : AlignLeft;
    } else if (left.CanAlignWith(x, c_sameEdge)) {
        mask = right.CanAlignWith(lastRight, c_sameEdge) ? AlignLeft | AlignJustified : AlignLeft;
    }
    if (centre.CanAlignWith(Quillet::GetCentre(line), c_sameEdge)) mask |= AlignCentre;
    if (right.CanAlignWith(GetRight(line), c_sameEdge)) mask |= AlignRight;
    return mask;
}

void Paragraph::Add(const Kernel::Counted<TextLineObject>& line)
{
    const double x = line->position.x;
    alignMask = lines.empty() ? AlignAll : alignMask & GetAlignMask(*line);
    if (lines.empty()) {
        left.Set(x);
        centre.Set(Quillet::GetCentre(*line));
        right.Set(GetRight(*line));
        rightBeforeLast = right;
        const bool isDropCap = line->IsDropCap();
        dropCapLines = isDropCap ? 1 : 0;
        leading = isDropCap ? line->GetDropCapLeading() : line->textHeight;
        if (previous) leading = std::min(leading, line->GetLeading(*previous->lines.back()));
    } else {
        const std::size_t count = lines.size();
        const bool isBody = count == 1 || count == static_cast<std::size_t>(dropCapLines);
        // The edge is that of the body: neither the first line nor those beside a drop cap count.
        isBody ? left.Set(x) : left.Add(x);
        centre.Add(Quillet::GetCentre(*line));
        rightBeforeLast = right;
        right.Add(GetRight(*line));
        leading = line->GetLeading(*lines.front()) / static_cast<double>(count);
        if (count == static_cast<std::size_t>(dropCapLines) && x >= lines.front()->GetDropCapLeft() - c_noise)
            ++dropCapLines;
    }
    lines.push_back(line);
}

void Paragraph::RemoveFrom(std::size_t count)
{
    Lines kept = std::exchange(lines, {});
    kept.resize(std::min(count, kept.size()));
    for (const Kernel::Counted<TextLineObject>& line : kept)
        Add(line);
}

void Paragraph::SetLeading(const Rect& /*rect*/)
{
    atts->Set(Story::ParagraphAtt::LeadingMode, Story::LeadingMode::Exact);
    atts->Set(Story::ParagraphAtt::Leading, leading);
    if (!previous) {
        atts->Set(Story::ParagraphAtt::SpaceBefore, 0);
        return;
    }
    const double gap = lines.front()->GetLeading(*previous->lines.back()) - leading;
    const double space = std::max(std::round(gap * 100) / 100, 0.0);
    atts->Set(Story::ParagraphAtt::SpaceBefore, space);
    // The first paragraph of a column shows no space before it; if it looks like this one, it has the same.
    const double difference = lines.front()->textHeight - previous->lines.front()->textHeight;
    if (!previous->previous && std::abs(difference) <= 0.1)
        previous->atts->Set(Story::ParagraphAtt::SpaceBefore, space);
}

void Paragraph::SetIndents(const Rect& rect)
{
    using namespace Story::ParagraphAtt;
    const double first = lines.front()->position.x;
    const double height = lines.back()->textHeight;
    const Story::AlignX::Type align = GetAlignX();
    switch (align) {
    case Story::AlignX::Right:
        left.Add(first);
        atts->Set(FirstLineIndent, 0);
        atts->Set(RightIndent, rect.right - right.maximum);
        atts->Set(LeftIndent, lines.size() == 1 ? 0 : std::max(left.minimum - rect.left - height, 0.0));
        break;
    case Story::AlignX::Centre: {
        const double middle = centre.GetCentre();
        const double before = middle - rect.left;
        const double behind = rect.right - middle;
        const double narrow = std::min(before, behind);
        atts->Set(LeftIndent, before - narrow);
        atts->Set(RightIndent, behind - narrow);
        atts->Set(FirstLineIndent, 0);
        break;
    }
    default: {
        if (dropCapLines >= 1) SetDropCap();
        const double ragged = align == Story::AlignX::Left ? height : 1;
        atts->Set(LeftIndent, left.minimum - rect.left);
        atts->Set(RightIndent, lines.size() == 1 ? 0 : std::max(rect.right - right.maximum - ragged, 0.0));
        atts->Set(FirstLineIndent, first - rect.left);
        break;
    }
    }
    constexpr double c_halfInch = 36;
    atts->Set(TabSpacing, c_halfInch);
}

void Paragraph::SetLineBreaks(const Rect& rect)
{
    using namespace Story::ParagraphAtt;
    for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
        TextLineObject& line = *lines[i];
        double room = rect.GetWidth() - atts->Get(i == 0 ? FirstLineIndent : LeftIndent);
        if (i != 0 && i < static_cast<std::size_t>(std::max(dropCapLines, 0))) room = rect.right - lines[1]->position.x;
        const double spare = room - atts->Get(RightIndent) - line.width;
        const TextLineObject& next = *lines[i + 1];
        const auto wordEnd = std::ranges::find_if(next.chars, [](const Char& c) { return c.isSpace || c.IsTab(); });
        const double word = next.GetWidth(next.chars.begin(), wordEnd);
        // Had the next word fitted, the break was the author's.
        if (spare >= word + line.GetLineWrapTolerance(atts->Get(WordSpaceMin))) {
            line.SetNeedsLineBreak(true);
        } else {
            line.SetNeedsLineBreak(std::ranges::any_of(line.chars, &Char::IsTab));
        }
    }
}

void Paragraph::ApplyWordSpace()
{
    double least = lines.front()->wordSpace;
    double most = least;
    bool hasUndefined = false;
    for (const Kernel::Counted<TextLineObject>& line : lines) {
        least = std::min(least, line->wordSpace);
        most = std::max(most, line->wordSpace);
        hasUndefined = hasUndefined || (line != lines.front() && line->HasUndefinedSpace());
    }
    constexpr double c_step = 0.05;
    const bool isMiddle = GetTextFidelity() == TextFidelityExact || hasUndefined;
    const double desired =
        isMiddle ? (least + most) * 0.5 : std::round(std::max(std::min(1.0, most), least) / c_step) * c_step;
    atts->Set(Story::ParagraphAtt::WordSpaceMin, std::min(0.8, least));
    atts->Set(Story::ParagraphAtt::WordSpaceDesired, desired);
    atts->Set(Story::ParagraphAtt::WordSpaceMax, std::max(1.8, most));
    const Story::AlignX::Type align = GetAlignX();
    const bool isJustified = align >= Story::AlignX::Justified && align <= Story::AlignX::JustifiedAll;
    for (const Kernel::Counted<TextLineObject>& line : lines) {
        if (!isJustified) line->SetWordSpace(desired);
        line->SetDoubleSpaceAfterPunctuation();
    }
}

void Paragraph::OnComplete(const Rect& rect, const FrequencyMap& tabs)
{
    SetLeading(rect);
    SetIndents(rect);
    AdjustTabStops(rect, tabs);
    for (const Kernel::Counted<TextLineObject>& line : lines)
        line->AddMultipleSpaces();
    SetLineBreaks(rect);
}

Kernel::Counted<Paragraph> Paragraph::TrySplit()
{
    using namespace Story::ParagraphAtt;
    constexpr double c_sameIndent = 0.0001;
    const Story::AlignX::Type align = GetAlignX();
    if (lines.size() <= 1 || atts->Get(SpaceBefore) != 0 || atts->GetList()->type != Story::ListType::None ||
        std::abs(atts->Get(LeftIndent) - atts->Get(FirstLineIndent)) > c_sameIndent || dropCapLines != 0 ||
        (align >= Story::AlignX::Justified && align <= Story::AlignX::JustifiedAll))
        return nullptr;
    const auto end = std::prev(lines.end());
    const auto back = std::find_if(lines.begin(), end, [](const auto& line) { return line->needsLineBreak; });
    // What is moved up by each of many splits is paid for.
    if (back == end || !Budget::Spend(static_cast<unsigned long long>(end - back) / Limits::c_movedBucketsPerUnit +
                                      Limits::c_entryUnits))
        return nullptr;
    (*back)->SetIsParagraphBack(true);
    return Kernel::MakeCounted<Paragraph>(*this, std::next(back));
}

void Paragraph::Simplify()
{
    using namespace Story::ParagraphAtt;
    if (std::ranges::any_of(lines, [](const auto& line) { return line->UsesWrap(); })) return;
    const bool isLone = lines.size() == 1 && (!previous || previous->GetAlignX() != Story::AlignX::Justified);
    if (GetAlignX() == Story::AlignX::Justified && isLone) atts->Set(Alignment, Story::AlignX::Left);
    constexpr double c_sameIndent = 0.001;
    if (GetAlignX() == Story::AlignX::Left &&
        (!previous || std::abs(previous->atts->Get(RightIndent) - atts->Get(RightIndent)) <= c_sameIndent))
        atts->Set(RightIndent, 0);
}

} // namespace Quillet
