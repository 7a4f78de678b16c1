#include "content/GraphicsStateStack.h"

#include "content/Resources.h"
#include "document/Limits.h"
#include "text/TextHandler.h"

#include <Quillet/Budget.h>
#include <Quillet/Page.h>

#include <ranges>
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

void GraphicsStateStack::PutLayer(const Kernel::Counted<GroupObject>& layer, const Kernel::Counted<GroupObject>& group)
{
    std::unordered_map<const GroupObject*, Kernel::Counted<GroupObject>> twins;
    const auto getTwin = [&](const GroupObject* taken, const Kernel::Counted<GroupObject>& place) {
        Kernel::Counted<GroupObject>& twin = twins[taken];
        if (!twin && Budget::Spend(Limits::c_objectUnits)) {
            twin = taken->MakeTwin();
            place->Add(twin);
        }
        return twin ? twin : place;
    };

    Kernel::Counted<GroupObject> place = GetTop().currentGroup;
    GetTop().SetCurrentGroup(group);
    GetTop().AddObject(layer);
    for (std::size_t i = states.size(); i-- > 0; place = i > 0 ? states[i - 1].currentGroup : nullptr) {
        std::vector<const GroupObject*> taken;
        const Object* above = place.Get();
        for (; above && above != layer.Get() && above != group.Get(); above = above->parent.Get())
            taken.push_back(above->AsGroup());
        if (!Budget::Spend(Limits::c_operatorUnits * taken.size()) || above != layer.Get()) return;
        place = group;
        for (const GroupObject* inner : taken | std::views::reverse)
            place = getTwin(inner, place);
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
