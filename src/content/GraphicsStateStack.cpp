#include "content/GraphicsStateStack.h"

#include "content/Resources.h"
#include "document/Limits.h"
#include "text/TextHandler.h"

#include <Quillet/Budget.h>
#include <Quillet/Page.h>

#include <utility>

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
