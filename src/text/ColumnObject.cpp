#include <Quillet/ColumnObject.h>

#include "document/Limits.h"
#include "objects/SoftMask.h"
#include "text/Paragraph.h"

#include <Quillet/Budget.h>
#include <Quillet/Page.h>

#include <Kernel/CharacterType.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace Quillet {

namespace {

/// Lines, and edges, as far apart are the same.
constexpr double c_sameEdge = 1;
constexpr double c_noise = 1e-5;
/// Of a size: how far to the right of the last line the next one may begin.
constexpr double c_maxGap = 1.8;
/// Of a size: how far below the last line the next one may stand, in a column of few lines and in one of many. Lines
/// with a common edge may stand twice as far apart.
constexpr std::size_t c_fewLines = 2;
constexpr double c_maxLeadingOfFew = 2.5;
constexpr double c_maxLeading = 3.5;
/// A drop cap is more than that many times as large as the text beside it.
constexpr double c_capRatio = 2;
/// Of a size: a gap that may part columns.
constexpr double c_columnGap = 5;

using Rect = Object::Rect;

bool DoBoxesMeet(const Rect& a, const Rect& b)
{
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

Rect Grow(const Rect& box, double amount)
{
    return box.IsEmpty() ? box : box.Inflated(amount);
}

bool IsSameEdge(double a, double b)
{
    return std::abs(a - b) <= c_sameEdge;
}

/// How far apart two boxes are in x; negative if they overlap.
double GetGap(const Rect& a, const Rect& b)
{
    return std::max(a.left - b.right, b.left - a.right);
}

/// The last line begins there most often.
bool HasLineAt(const ColumnObject& column, double x)
{
    return std::any_of(column.lines.rbegin(), column.lines.rend(), [x](const auto& line) {
        return Budget::Spend(Limits::c_comparisonUnits) && IsSameEdge(line->position.x, x);
    });
}

int MakeId(Kernel::NonCounted<const Page> page)
{
    return page ? page->MakeObjectId() : -1;
}

} // namespace

ColumnObject::ColumnObject(int newId) : Object(Kind::Column)
{
    id = newId;
}

ColumnObject::ColumnObject(ColumnObject& source, int newId, Lines::const_iterator first)
    : Object(source), inkAbove(source.inkAbove), inkBelow(source.inkBelow)
{
    id = newId;
    SetSoftMask(source.softMask);
    const auto begin = source.lines.begin() + (first - source.lines.cbegin());
    lines.assign(std::make_move_iterator(begin), std::make_move_iterator(source.lines.end()));
    source.lines.erase(begin, source.lines.end());
    for (const Kernel::Counted<TextLineObject>& line : lines)
        line->SetParent(this);
}

ColumnObject::~ColumnObject()
{
    ColumnObject::Clear();
}

void ColumnObject::Clear()
{
    for (const Kernel::Counted<TextLineObject>& line : lines) {
        if (line->parent.Get() == this) line->parent = nullptr;
    }
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

bool ColumnObject::IsArtText() const
{
    return !IsGroupTextLines() || (!lines.empty() && lines.front()->HasArtTransform());
}

Renderer::FillBlendMode::BlendMode ColumnObject::GetBlendMode() const
{
    return lines.empty() ? Renderer::FillBlendMode::Normal : lines.front()->blendMode;
}

bool ColumnObject::TryMerge(const Kernel::Counted<TextLineObject>& line, bool tryAdjacent)
{
    if (lines.empty()) {
        AddAdjacent(line);
        return true;
    }
    if (!HasCompatibleAttributes(line) || GetBlendMode() != line->blendMode) return false;
    if (TryAddMerge(line, tryAdjacent)) return true;
    if (!tryAdjacent || !IsGroupTextLines()) return false;

    const TextLineObject& lastLine = *lines.back();
    const Rect last = lastLine.GetGdiTextBox();
    const Rect box = line->GetGdiTextBox();
    if (box.top < last.top || (box.top <= last.top && box.left - last.right < c_noise)) return false;
    if (box.left > last.right + lastLine.textHeight * c_maxGap) return false;
    double leading = lines.size() <= c_fewLines ? c_maxLeadingOfFew : c_maxLeading;
    if (IsSameEdge(box.left, last.left) || IsSameEdge(box.right, last.right)) leading *= 2;
    if (box.top > last.top + leading * std::max(lastLine.textHeight, line->textHeight)) return false;
    AddAdjacent(line);
    return true;
}

void ColumnObject::AddAdjacent(const Kernel::Counted<TextLineObject>& line)
{
    if (lines.empty()) {
        SetSoftMask(line->softMask);
        clipPath = line->clipPath;
        clipWinding = line->clipWinding;
        transform = line->transform;
        SetBBox(line->bbox);
    } else {
        SetBBox(bbox.Union(line->bbox));
    }
    NoteInk(*line);
    lines.push_back(line);
    line->SetParent(this);
}

void ColumnObject::NoteInk(const TextLineObject& line)
{
    const double baseline = line.GetGdiPosition().y;
    inkAbove = std::max(inkAbove, baseline - line.bbox.top);
    inkBelow = std::max(inkBelow, line.bbox.bottom - baseline);
}

ColumnObject::Lines::iterator ColumnObject::FindLineOfCap(const TextLineObject& cap)
{
    // One letter or digit, behind whatever marks.
    if (cap.chars.empty() || !Kernel::IsAlnum(cap.chars.back().unicode)) return lines.end();
    if (cap.GetDropCapEnd() != cap.chars.cend() || !std::isfinite(cap.bbox.top)) return lines.end();
    const double right = cap.bbox.right;
    const double baseline = cap.GetGdiPosition().y;
    for (auto line = std::ranges::upper_bound(lines, cap.bbox.top, {},
                                              [](const auto& other) { return other->GetGdiPosition().y; });
         line != lines.end() && (*line)->GetGdiPosition().y <= baseline; ++line) {
        if (!Budget::Spend(Limits::c_comparisonUnits)) break;
        const double gap = (*line)->position.x - right;
        if (gap > -c_sameEdge && gap < (*line)->textHeight && (*line)->textHeight * c_capRatio < cap.textHeight)
            return line;
    }
    return lines.end();
}

ColumnObject::Lines::iterator ColumnObject::FindInk(const Rect& box)
{
    // Baselines are in order, and no ink is farther from its own than any is, so that few lines need be looked at.
    const auto above = std::ranges::lower_bound(lines, box.top - inkBelow, {},
                                                [](const auto& line) { return line->GetGdiPosition().y; });
    const auto below = std::ranges::upper_bound(lines, box.bottom + inkAbove, {},
                                                [](const auto& line) { return line->GetGdiPosition().y; });
    for (auto line = below; line > above;) {
        --line;
        if (!Budget::Spend(Limits::c_comparisonUnits)) break;
        if (DoBoxesMeet((*line)->bbox, box)) return line;
    }
    return lines.begin();
}

bool ColumnObject::TryAddMerge(const Kernel::Counted<TextLineObject>& line, bool tryLast)
{
    if (lines.empty() || line->chars.empty()) return false;
    if (tryLast && lines.back()->CanMoveTo(line->position, line->chars.front().atts)) {
        AddMerge(std::prev(lines.end()), *line);
        return true;
    }
    if (!DoBoxesMeet(Grow(bbox, 1), line->bbox)) return false;
    // A drop cap that is drawn after its text stands beside several lines. It is the first one's.
    auto target = FindLineOfCap(*line);
    if (target == lines.end()) target = FindInk(Grow(line->bbox, c_noise));
    if (!(*target)->CanMergeWith(*line)) return false;
    AddMerge(target, *line);
    return true;
}

void ColumnObject::AddMerge(Lines::iterator target, const TextLineObject& line)
{
    const Kernel::Counted<TextLineObject> merged = *target;
    merged->Merge(line);
    SetBBox(bbox.Union(merged->bbox));
    NoteInk(*merged);
    const double y = merged->position.y;
    while (target != lines.begin() && (*std::prev(target))->position.y < y) {
        std::iter_swap(target, std::prev(target));
        --target;
    }
    while (std::next(target) != lines.end() && (*std::next(target))->position.y > y) {
        std::iter_swap(target, std::next(target));
        ++target;
    }
}

void ColumnObject::Remove(Lines::const_iterator line)
{
    if ((*line)->parent.Get() == this) (*line)->parent = nullptr;
    lines.erase(line);
    UpdateBBox();
}

Kernel::Counted<ColumnObject> ColumnObject::ExtractAdjacentColumn(Kernel::NonCounted<const Page> page)
{
    const auto parted = SplitAdjacentLines(page);
    if (parted != lines.end()) return Split(parted, page);
    if (lines.empty()) return nullptr;
    Rect column = lines.front()->GetGdiTextBox();
    for (auto line = std::next(lines.begin()); line != lines.end(); ++line) {
        const Rect box = (*line)->GetGdiTextBox();
        const double height = (*line)->textHeight;
        if (GetGap(column, box) > height) {
            for (auto next = line; next != lines.end(); ++next) {
                const Rect other = (*next)->GetGdiTextBox();
                if (GetGap(column, other) < 0 || !Budget::Spend(Limits::c_comparisonUnits)) break;
                if (other.top > column.bottom + height) return Split(line, page);
            }
        }
        column = column.Union(box);
    }
    return nullptr;
}

ColumnObject::Lines::iterator ColumnObject::SplitAdjacentLines(Kernel::NonCounted<const Page> page)
{
    for (auto line = lines.begin(); line != lines.end(); ++line) {
        TextLineObject& wide = **line;
        const auto gap = wide.FindGap(wide.textHeight * c_columnGap);
        if (gap == wide.chars.cend()) continue;
        const double left = wide.position.x;
        const double gapLeft = left + wide.GetWidth(wide.chars.cbegin(), gap);
        const double gapRight = gapLeft + gap->width;
        if (BelongsInColumn(wide, left, gapLeft) && BelongsInColumn(wide, gapRight, left + wide.width) &&
            lines.size() > c_fewLines)
            continue;
        const Kernel::Counted<TextLineObject> part = wide.Split(gap, gap + 1, MakeId(page));
        part->SetParent(this);
        return lines.insert(std::next(line), part);
    }
    return lines.end();
}

bool ColumnObject::BelongsInColumn(const TextLineObject& line, double left, double right) const
{
    if (lines.size() <= c_fewLines) return true;
    return std::any_of(std::next(lines.begin()), lines.end(), [&](const auto& other) {
        const Rect box = other->GetGdiTextBox();
        if (other.Get() == &line) return false;
        // What cannot be paid for stays whole.
        return !Budget::Spend(Limits::c_comparisonUnits) || (box.left < right && left < box.right);
    });
}

Kernel::Counted<ColumnObject> ColumnObject::Split(Lines::iterator first, Kernel::NonCounted<const Page> page)
{
    Budget::Spend(Limits::c_comparisonUnits * static_cast<unsigned long long>(lines.end() - first));
    auto column = Kernel::MakeCounted<ColumnObject>(*this, MakeId(page), first);
    column->UpdateBBox();
    UpdateBBox();
    return column;
}

bool ColumnObject::CanMergeColumn(const ColumnObject& other) const
{
    return CanMergeColumn(other, GetBaseStoryFrameBox(), other.GetBaseStoryFrameBox());
}

bool ColumnObject::CanMergeColumn(const ColumnObject& other, const Rect& above, const Rect& below) const
{
    if (!HasCompatibleAttributes(Kernel::Counted<const Object>(&other)) || GetBlendMode() != other.GetBlendMode())
        return false;
    if (lines.empty() || other.lines.empty()) return false;
    if (below.left > above.right || below.right < above.left) return false;
    // One baseline, unless text is drawn on text, as some do for bold type.
    if (IsSameEdge(below.top, above.bottom)) {
        const TextLineObject& last = *lines.back();
        const TextLineObject& first = *other.lines.front();
        return GetGap(last.GetGdiTextBox(), first.GetGdiTextBox()) >= 0 || last.CanMergeWith(first);
    }
    if (below.top < above.bottom + lines.back()->textHeight) return false;
    if (IsSameEdge(above.left, below.left) || IsSameEdge(above.right, below.right) ||
        IsSameEdge(above.GetCentre().x, below.GetCentre().x))
        return true;
    return below.left > above.left ? HasLineAt(*this, below.left) : HasLineAt(other, above.left);
}

void ColumnObject::MergeColumn(ColumnObject& other)
{
    auto next = other.lines.begin();
    if (!lines.empty()) {
        const Kernel::Counted<TextLineObject> last = lines.back();
        const double y = last->GetGdiPosition().y;
        for (; next != other.lines.end() && IsSameEdge((*next)->GetGdiPosition().y, y); ++next)
            AddMerge(std::find(lines.rbegin(), lines.rend(), last).base() - 1, **next);
    }
    for (; next != other.lines.end(); ++next) {
        (*next)->SetParent(this);
        NoteInk(**next);
        lines.push_back(std::move(*next));
        SetBBox(bbox.Union(lines.back()->bbox));
    }
    other.lines.clear();
    other.Clear();
}

Rect ColumnObject::GetBaseStoryFrameBox() const
{
    Rect box = Rect::MakeEmpty();
    for (const Kernel::Counted<TextLineObject>& line : lines)
        box = box.Union(line->GetGdiTextBox());
    return box;
}

Kernel::PointT<double> ColumnObject::GetStoryArtOrigin() const
{
    const Rect box = GetBaseStoryFrameBox();
    return {box.left, box.top};
}

double ColumnObject::GetSpaceAbove() const
{
    return lines.empty() ? 0 : lines.front()->GetSpaceAbove();
}

double ColumnObject::GetSpaceBelow() const
{
    return lines.empty() ? 0 : lines.back()->GetMinSpaceBelow();
}

Kernel::Counted<TextLineObject> ColumnObject::GetWidestLine() const
{
    Kernel::Counted<TextLineObject> widest;
    double greatest = 0;
    for (const Kernel::Counted<TextLineObject>& line : lines) {
        const double lineWidth = line->GetStoryWidth();
        if (widest && !(lineWidth > greatest)) continue;
        widest = line;
        greatest = lineWidth;
    }
    return widest;
}

} // namespace Quillet
