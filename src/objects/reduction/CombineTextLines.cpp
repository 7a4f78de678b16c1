// Gathers the lines of a group into columns.

#include "document/Limits.h"
#include "objects/BoxIndex.h"

#include <Quillet/Budget.h>
#include <Quillet/ColumnObject.h>
#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>
#include <Quillet/TextLineObject.h>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace Quillet {

namespace {

constexpr double c_tolerance = 1e-5;
/// A line joins a column if their ink is that near.
constexpr double c_reach = 1;
/// Objects that are looked at one by one. Most lines find their column, or what bars the way to it, among these.
constexpr std::size_t c_nearby = 16;

/// The objects of a group so far, the latest last.
class Combiner
{
public:
    explicit Combiner(GroupObject& owner) : group(owner) {}

    /// Takes up an object that is no line.
    void Add(Kernel::Counted<Object> object)
    {
        objects.push_back(std::move(object));
        Index(objects.size() - 1);
    }

    void AddLine(const Kernel::Counted<TextLineObject>& line)
    {
        line->MoveShearToGlyphs();
        if (TryCombineTextLine(line)) return;
        const Kernel::NonCounted<const Page> page = group.GetPage();
        const auto column = Kernel::MakeCounted<ColumnObject>(page ? page->MakeObjectId() : -1);
        column->SetParent(&group);
        column->TryMerge(line, true);
        Add(column);
    }

    GroupObject::Children Release() { return std::move(objects); }

private:
    /// Goes back from the latest object. A line may pass what it does not cover, and joins a column only there; only
    /// the latest may be gone on with below its last line.
    bool TryCombineTextLine(const Kernel::Counted<TextLineObject>& line)
    {
        const std::size_t count = objects.size();
        const std::size_t last = count - std::min(count, c_nearby);
        for (std::size_t i = count; i > last;) {
            --i;
            if (const auto answer = TryObject(i, line, i + 1 == count)) return *answer == Answer::Joined;
        }
        if (last == 0) return false;

        near.clear();
        const Object::Rect box = line->transformedBBox.Inflated(c_tolerance);
        const bool isWhole = index.VisitNear(box, [&](std::size_t i) {
            if (i < last) near.push_back(i);
            return true;
        });
        if (!isWhole || !Budget::Spend(Limits::c_comparisonUnits * near.size())) return false;
        // The latest first; most often that is the only one to be looked at.
        std::ranges::make_heap(near);
        for (; !near.empty(); near.pop_back()) {
            if (!Budget::Spend(Limits::c_touchUnits)) return false;
            std::ranges::pop_heap(near);
            if (const auto answer = TryObject(near.back(), line, false)) return *answer == Answer::Joined;
        }
        return false;
    }

    enum class Answer { Joined, Barred };

    std::optional<Answer> TryObject(std::size_t i, const Kernel::Counted<TextLineObject>& line, bool isLatest)
    {
        Object& object = *objects[i];
        if (object.GetKind() == Object::Kind::Column && static_cast<ColumnObject&>(object).TryMerge(line, isLatest)) {
            Index(i);
            return Answer::Joined;
        }
        if (object.Overlaps(line->transformedBBox, c_tolerance)) return Answer::Barred;
        return std::nullopt;
    }

    void Index(std::size_t i)
    {
        const Object& object = *objects[i];
        if (object.GetKind() != Object::Kind::Column) {
            index.Set(i, object.transformedBBox);
        } else if (!object.bbox.IsEmpty()) { // Nothing joins a column without ink from afar.
            index.Set(i, object.transform.ApplyTo(object.bbox.Inflated(c_reach)));
        }
    }

    GroupObject& group;
    GroupObject::Children objects;
    BoxIndex index;
    std::vector<std::size_t> near;
};

} // namespace

void GroupObject::CombineTextLines()
{
    const auto isLine = [](const auto& child) { return child && child->GetKind() == Kind::TextLine; };
    if (std::ranges::any_of(children, isLine)) {
        Combiner combiner(*this);
        for (Kernel::Counted<Object>& child : std::exchange(children, {})) {
            if (isLine(child)) {
                combiner.AddLine(Kernel::Counted<TextLineObject>(static_cast<TextLineObject*>(child.Get())));
            } else if (child) {
                combiner.Add(std::move(child));
            }
        }
        children = combiner.Release();
    }
    UpdateBBox();
}

} // namespace Quillet
