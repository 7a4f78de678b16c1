// The passes that repair the columns of a group, and finish them.

#include "document/Limits.h"

#include <Quillet/Budget.h>
#include <Quillet/ColumnObject.h>
#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>

#include <algorithm>
#include <utility>

namespace Quillet {

namespace {

ColumnObject* AsColumn(const Kernel::Counted<Object>& object)
{
    const bool isColumn = object && object->GetKind() == Object::Kind::Column;
    return isColumn ? static_cast<ColumnObject*>(object.Get()) : nullptr;
}

} // namespace

void GroupObject::IsolateAdjacentColumns()
{
    if (std::ranges::none_of(children, AsColumn)) return;
    const Kernel::NonCounted<const Page> ownPage = GetPage();
    Children isolated;
    isolated.reserve(children.size());
    for (Kernel::Counted<Object>& child : children) {
        isolated.push_back(std::move(child));
        // What was taken out may hold another column in its turn.
        while (ColumnObject* column = AsColumn(isolated.back())) {
            const Kernel::Counted<ColumnObject> beside = column->ExtractAdjacentColumn(ownPage);
            if (!beside) break;
            beside->SetParent(this);
            isolated.push_back(beside);
        }
    }
    children = std::move(isolated);
}

void GroupObject::MergeAdjacentColumns()
{
    Children merged;
    merged.reserve(children.size());
    Rect above = Rect::MakeEmpty(); // Of the last column, which may grow line by line.
    for (Kernel::Counted<Object>& child : children) {
        ColumnObject* const column = AsColumn(child);
        ColumnObject* const before = merged.empty() ? nullptr : AsColumn(merged.back());
        const Rect below = column ? column->GetBaseStoryFrameBox() : Rect::MakeEmpty();
        if (!column || !before || !before->CanMergeColumn(*column, above, below)) {
            merged.push_back(std::move(child));
            above = below;
            continue;
        }
        const std::size_t count = before->lines.size() + column->lines.size();
        before->MergeColumn(*column);
        above = above.Union(below);
        // Lines that became one may have moved.
        if (before->lines.size() != count && Budget::Spend(Limits::c_comparisonUnits * count))
            above = before->GetBaseStoryFrameBox();
    }
    children = std::move(merged);
}

void GroupObject::SetParagraphs()
{
    for (const Kernel::Counted<Object>& child : children) {
        if (ColumnObject* column = AsColumn(child)) column->SetParagraphs();
    }
    UpdateBBox();
}

} // namespace Quillet
