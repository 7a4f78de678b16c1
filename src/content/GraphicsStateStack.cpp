#include "content/GraphicsStateStack.h"

#include "document/Resources.h"
#include "document/Limits.h"
#include "content/TextHandler.h"

#include <Quillet/Budget.h>
#include <Quillet/Page.h>

#include <unordered_map>
#include <utility>
#include <vector>

namespace Quillet {

GraphicsStateStack::GraphicsStateStack(Kernel::NonCounted<const Page> stackPage)
{
    Init(stackPage);
    SaveInitialState(page->GetCropBox(), page->GetTrimBox(), page->GetClipBox(), page->GetRotate());
}

GraphicsStateStack::GraphicsStateStack(Kernel::NonCounted<const Page> stackPage, const Kernel::RectT<double>& rect)
{
    Init(stackPage);
    SaveInitialState(rect, rect, rect, 0);
}

GraphicsStateStack::~GraphicsStateStack() = default;

void GraphicsStateStack::Init(Kernel::NonCounted<const Page> stackPage)
{
    page = stackPage.Get();
    resources = page->GetResources();
    textHandler = std::make_unique<TextHandler>(this);
    states.reserve(3);
}

void GraphicsStateStack::SaveInitialState(const Kernel::RectT<double>& crop, const Kernel::RectT<double>& trim,
                                          const Kernel::RectT<double>& clip, int rotate)
{
    GraphicsState state(page, *textHandler);
    state.SetSource(crop, trim, clip, rotate);
    state.SetXObjectDepth(xObjectDepth);
    states.push_back(std::move(state));
    root = GetTop().currentGroup;
}

void GraphicsStateStack::Save()
{
    Push(GetTop());
}

void GraphicsStateStack::Push(const GraphicsState& state)
{
    // The vector keeps its room, so that a page pays for its deepest nesting only; dashes are copied every time.
    if (states.size() == states.capacity()) {
        Budget::Spend(Limits::c_objectUnits * states.size());
    }
    Budget::Spend(Limits::c_paintUnits + state.lineDash.size() * sizeof(double));
    states.push_back(state);
}

void GraphicsStateStack::Pop()
{
    GetTop().OnPop(states.size() > 1 ? &states[states.size() - 2] : nullptr);
    states.pop_back();
}

void GraphicsStateStack::Restore()
{
    if (GetTop().xObjectDepth >= xObjectDepth) Pop();
}

void GraphicsStateStack::SaveForXObject()
{
    Save();
    GetTop().SetXObjectDepth(++xObjectDepth);
}

void GraphicsStateStack::RestoreForXObject()
{
    const int depth = xObjectDepth--;
    if (GetTop().xObjectDepth >= depth) {
        while (!states.empty() && GetTop().xObjectDepth > xObjectDepth)
            Pop();
    }
    // Text that the form has left open clips nothing outside of it.
    textHandler->clipOutline.curves.clear();
    currentCategory = OperatorCategory::Page;
}

void GraphicsStateStack::FlushObjects()
{
    textHandler->FlushText();
}

namespace {

unsigned long long CountClipNodes(const GroupObject& group)
{
    unsigned long long count = 0;
    if (group.clipPath) {
        for (const auto& curve : *group.clipPath)
            count += curve->nodes.size();
    }
    return count;
}

/// Finds places beside a layer for groups that were taken into it.
class GroupsBesideLayer
{
public:
    using Group = Kernel::Counted<GroupObject>;

    GroupsBesideLayer(Group layerOfContent, Group groupOfLayer)
        : layer(std::move(layerOfContent)), outside(std::move(groupOfLayer))
    {}

    /// Where a state goes on whose group is `current`; null if that was not taken.
    Group Find(const Group& current)
    {
        if (const auto known = places.find(current.Get()); known != places.end()) return known->second;
        std::vector<Group> taken;
        Object* above = current.Get();
        for (; above && above != layer.Get() && above != outside.Get(); above = above->parent.Get())
            taken.emplace_back(above->AsGroup());
        if (!Budget::Spend(Limits::c_operatorUnits * (taken.size() + 1)) || above != layer.Get()) return nullptr;

        Group place = outside;
        for (std::size_t i = taken.size(); i-- > 0;)
            place = FindPlace(taken, i, place);
        return place;
    }

private:
    /// Whether nothing is drawn in a group yet, apart from those of the same row inside it.
    static bool IsEmpty(const std::vector<Group>& taken, std::size_t index)
    {
        for (; index > 0; --index) {
            if (taken[index]->children.size() != 1 || taken[index]->children.back() != taken[index - 1]) return false;
        }
        return taken[0]->children.empty();
    }

    Group FindPlace(const std::vector<Group>& taken, std::size_t index, const Group& above)
    {
        const Group& group = taken[index];
        if (const auto known = places.find(group.Get()); known != places.end()) return known->second;
        Group place = above;
        GroupObject* const holder = index + 1 < taken.size() ? taken[index + 1].Get() : layer.Get();
        if (IsEmpty(taken, index) && holder->children.back() == group) {
            // It holds nothing for the layer, and need not be made again.
            holder->children.pop_back();
            above->Add(group);
            for (std::size_t i = 0; i <= index; ++i)
                places[taken[i].Get()] = taken[i];
            return group;
        }
        if (Budget::Spend(Limits::c_objectUnits + Limits::c_clipNodeUnits * CountClipNodes(*group))) {
            place = group->MakeTwin();
            above->Add(place);
        }
        return places[group.Get()] = place;
    }

    Group layer;
    Group outside;
    std::unordered_map<const GroupObject*, Group> places;
};

} // namespace

void GraphicsStateStack::PutLayer(const Kernel::Counted<GroupObject>& layer, const Kernel::Counted<GroupObject>& group)
{
    Kernel::Counted<GroupObject> current = GetTop().currentGroup;
    GetTop().SetCurrentGroup(group);
    GetTop().AddObject(layer);
    GroupsBesideLayer places(layer, group);
    for (std::size_t i = states.size(); i-- > 0; current = i > 0 ? states[i - 1].currentGroup : nullptr) {
        const Kernel::Counted<GroupObject> place = places.Find(current);
        if (!place) return;
        states[i].SetCurrentGroup(place);
    }
}

void GraphicsStateStack::SetResources(Kernel::Counted<const Resources> newResources)
{
    resources = std::move(newResources);
}

void GraphicsStateStack::OnCompatibility(bool isBegin)
{
    compatibilityCount += isBegin ? 1 : -1;
}

const ErrorHandler* GraphicsStateStack::GetErrorHandler() const
{
    return page->GetErrorHandler();
}

const bool* GraphicsStateStack::GetAbortPointer() const
{
    return page->GetAbortPointer();
}

Kernel::NonCounted<ColourSpaceFactory> GraphicsStateStack::GetColourSpaceFactory() const
{
    return page->ref.GetColourSpaceFactory();
}

} // namespace Quillet
