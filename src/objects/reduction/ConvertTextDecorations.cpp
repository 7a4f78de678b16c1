#include <Quillet/ColumnObject.h>
#include <Quillet/GroupObject.h>
#include <Quillet/PathObject.h>

#include "document/Limits.h"
#include "objects/BoxIndex.h"
#include "text/TextLineDecorator.h"

#include <Quillet/Budget.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace Quillet {

namespace {

using Rect = Object::Rect;

/// What rounding makes of a place on the page: a part of its distance from the origin, and of a point.
constexpr double c_noise = 1e-5;
constexpr double c_smallNoise = 0.01;

Rect MakeLarger(const Rect& rect)
{
    const double reach =
        std::max({std::abs(rect.left), std::abs(rect.top), std::abs(rect.right), std::abs(rect.bottom)});
    return rect.Inflated(c_smallNoise + c_noise * reach);
}

/// The lines of a group, with those of its columns, in paint order.
class Lines
{
public:
    explicit Lines(const GroupObject& group)
    {
        for (std::size_t i = 0; i < group.children.size(); ++i) {
            Object& child = *group.children[i];
            if (child.GetKind() == Object::Kind::TextLine) {
                AddLine(static_cast<TextLineObject&>(child), i);
            } else if (child.GetKind() == Object::Kind::Column) {
                for (const auto& line : static_cast<ColumnObject&>(child).lines)
                    AddLine(*line, i);
            }
        }
    }

    ~Lines()
    {
        for (const Entry& entry : entries) {
            if (entry.decorator) entry.decorator->Finish();
        }
    }
    Lines(const Lines&) = delete;
    Lines& operator=(const Lines&) = delete;

    bool IsEmpty() const { return entries.empty(); }

    /// Whether a line takes the path, the child at `place`, as a decoration: the first that can does.
    bool TryDecoration(const PathObject& path, std::size_t place)
    {
        // What decorates a line lies in its reach, and so does the middle of it.
        const auto middle = path.transform.ApplyTo(path.GetAsRectangle().GetCentre());
        near.clear();
        const Rect spot{middle.x, middle.y, middle.x, middle.y};
        index.VisitNear(spot, [&](std::size_t number) {
            if (entries[number].reach.Contains(spot)) near.push_back(number);
            return true;
        });
        std::ranges::sort(near);
        for (const std::size_t number : near) {
            Entry& entry = entries[number];
            if (!Budget::Spend(Limits::c_entryUnits)) return false;
            if (!entry.decorator) entry.decorator = std::make_unique<TextLineDecorator>(*entry.line);
            if (entry.decorator->Try(path, place < entry.place)) return true;
        }
        return false;
    }

private:
    struct Entry
    {
        TextLineObject* line;
        /// Of the child that it is, or is in.
        std::size_t place;
        Rect reach;
        /// Made when a path is near.
        std::unique_ptr<TextLineDecorator> decorator;
    };

    void AddLine(TextLineObject& line, std::size_t place)
    {
        const Rect reach = MakeLarger(line.transform.ApplyTo(TextLineDecorator::GetReach(line)));
        index.Set(entries.size(), reach);
        entries.push_back({&line, place, reach, nullptr});
    }

    std::vector<Entry> entries;
    BoxIndex index;
    std::vector<std::size_t> near;
};

} // namespace

void GroupObject::ConvertTextDecorations()
{
    {
        Lines lines(*this);
        if (lines.IsEmpty()) return;
        std::size_t place = 0;
        std::erase_if(children, [&](const Kernel::Counted<Object>& child) {
            const std::size_t own = place++;
            if (child->GetKind() != Kind::Path) return false;
            const auto& path = static_cast<const PathObject&>(*child);
            if (!TextLineObject::CanBeDecoration(path) || !lines.TryDecoration(path, own)) return false;
            child->parent = nullptr;
            return true;
        });
    }
    for (const Kernel::Counted<Object>& child : children) {
        if (child->GetKind() == Kind::Column) child->UpdateBBox();
    }
    UpdateBBox();
}

/// One path alone, by a walk along the children.
bool GroupObject::TryTextDecoration(const PathObject& path)
{
    if (!TextLineObject::CanBeDecoration(path)) return false;
    bool isBehind = false;
    for (const Kernel::Counted<Object>& child : children) {
        if (child.Get() == &path) {
            isBehind = true;
        } else if (child->GetKind() == Kind::TextLine) {
            if (static_cast<TextLineObject&>(*child).TryDecoration(path, isBehind)) return true;
        } else if (child->GetKind() == Kind::Column) {
            for (const auto& line : static_cast<ColumnObject&>(*child).lines) {
                if (!line->TryDecoration(path, isBehind)) continue;
                child->UpdateBBox();
                return true;
            }
        }
    }
    return false;
}

} // namespace Quillet
