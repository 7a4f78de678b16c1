// A running header or footer must not flow with the text of the page.

#include <Quillet/ColumnObject.h>
#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>
#include <Quillet/TreeWalk.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace Quillet {

namespace {

/// Of the height of the page, at its top and at its bottom.
constexpr double c_zone = 1.0 / 9.0;
/// How much farther than the lines beyond it, in their own sizes, a header stands from the next line.
constexpr double c_apart = 1.5;
constexpr double c_usualGap = 1.2;

using Columns = std::vector<ColumnObject*>;
using Rect = Object::Rect;

enum class Running { Header, Footer };

/// The line that is `number` away from the top, or from the bottom for a footer; null for none.
const TextLineObject* GetLine(const ColumnObject& column, Running kind, std::size_t number)
{
    const std::size_t count = column.lines.size();
    if (number >= count) return nullptr;
    return column.lines[kind == Running::Header ? number : count - 1 - number].Get();
}

/// The gap between two lines, whichever is above, by the size of one.
double GetRelativeGap(const TextLineObject* line, const TextLineObject* next, const TextLineObject* sized)
{
    return line && next ? std::abs((line->position.y - next->position.y) / sized->textHeight) : c_usualGap;
}

bool IsTooClose(const ColumnObject& column, Running kind)
{
    if (column.lines.size() == 1) return false;
    const TextLineObject* const line = GetLine(column, kind, 0);
    const TextLineObject* const next = GetLine(column, kind, 1);
    const TextLineObject* const third = GetLine(column, kind, 2);
    return GetRelativeGap(line, next, line) < c_apart * GetRelativeGap(next, third, third);
}

bool DoBoxesMeet(const Rect& a, const Rect& b)
{
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

bool IsRunning(Running kind, const ColumnObject& column, const Columns& columns, const Rect& page)
{
    const TextLineObject& line = *GetLine(column, kind, 0);
    const Rect& box = line.transformedBBox;
    const double zone = page.GetHeight() * c_zone;
    const bool isInZone = kind == Running::Header ? box.top <= page.top + zone : box.top >= page.bottom - zone;
    if (!isInZone || IsTooClose(column, kind)) return false;
    const auto meets = [&](const auto& other) { return other.Get() != &line && DoBoxesMeet(line.bbox, other->bbox); };
    if (std::ranges::any_of(column.lines, meets) || !line.IsHeaderFooterCandidate()) return false;
    return std::ranges::none_of(columns, [&](const ColumnObject* other) {
        return other != &column && other->lines.size() > 1 && other->transformedBBox.top < box.bottom;
    });
}

void Isolate(Running kind, ColumnObject& column)
{
    if (column.lines.size() == 1 || !column.parent) return;
    GroupObject& group = *column.parent->AsGroup();
    const Kernel::NonCounted<const Page> page = group.GetPage();
    const auto own = Kernel::MakeCounted<ColumnObject>(page ? page->MakeObjectId() : -1);
    auto place = std::ranges::find(group.children, &column, &Kernel::Counted<Object>::Get);
    if (kind == Running::Footer) ++place;
    group.Insert(place, own);
    const auto line = kind == Running::Header ? column.lines.begin() : std::prev(column.lines.end());
    own->TryMerge(*line, false);
    column.Remove(line);
}

} // namespace

void GroupObject::IsolateHeadersFooters()
{
    Columns columns;
    VisitSubGroups([&columns](GroupObject* group) {
        for (const Kernel::Counted<Object>& child : group->children) {
            if (!child || child->GetKind() != Kind::Column) continue;
            auto* column = static_cast<ColumnObject*>(child.Get());
            if (!column->lines.empty()) columns.push_back(column);
        }
    });
    const Kernel::NonCounted<const Page> ownPage = GetPage();
    if (columns.empty() || !ownPage) return;
    const Rect turned = PageBase::ApplyRotate(ownPage->GetTrimBox(), ownPage->GetRotate());
    const Rect pageBox{0, 0, turned.GetWidth(), turned.GetHeight()};

    ColumnObject* highest = columns.front();
    ColumnObject* lowest = columns.front();
    for (ColumnObject* column : columns) {
        if (column->lines.front()->position.y > highest->lines.front()->position.y) highest = column;
        if (column->lines.back()->position.y < lowest->lines.back()->position.y) lowest = column;
    }
    if (IsRunning(Running::Header, *highest, columns, pageBox)) Isolate(Running::Header, *highest);
    if (IsRunning(Running::Footer, *lowest, columns, pageBox)) Isolate(Running::Footer, *lowest);
}

bool TextLineObject::IsHeaderFooterCandidate() const
{
    constexpr double c_wideSpace = 3;
    bool hasSpace = false;
    for (const Char& c : chars) {
        if (!c.isSpace) continue;
        if (c.GetWordSpace() >= c_wideSpace) return true;
        hasSpace = true;
    }
    return !hasSpace;
}

} // namespace Quillet
