#include "content/Operator.h"

#include "document/ArgVec.h"
#include "content/GraphicsStateStack.h"

#include <Kernel/DemangleTypeName.h>

#include <typeinfo>

namespace Quillet {

void Operator::AddRasterFormats(RasterFormatPicker&, const ArgVec&) const {}

std::string Operator::GetName() const
{
    const std::string name = Kernel::DemangleTypeName(typeid(*this));
    return name.size() < 3 ? std::string() : name.substr(2);
}

void Operator::Init(Kernel::NonCounted<GraphicsStateStack> newStack)
{
    stack = newStack;
    SetErrorHandler(stack->GetErrorHandler());
}

bool Operator::CheckCall(OperatorCategory::Type mask, const ArgVec& args, int count) const
{
    const bool isCountRight = count == -1 || args.count == count;
    Check(isCountRight && (stack->currentCategory & mask) != 0, Error::General);
    return isCountRight;
}

GraphicsState& Operator::GetState() const
{
    return stack->GetTop();
}

Kernel::NonCounted<const Page> Operator::GetPage() const
{
    return stack->page;
}

const Kernel::Counted<const Resources>& Operator::GetResources() const
{
    return stack->resources;
}

Kernel::NonCounted<ColourSpaceFactory> Operator::GetColourSpaceFactory() const
{
    return stack->GetColourSpaceFactory();
}

TextHandler& Operator::GetTextHandler() const
{
    return *stack->textHandler;
}

PdfPath& Operator::GetPath() const
{
    return stack->path;
}

PdfSubPath& Operator::GetSubPath() const
{
    PdfPath& path = GetPath();
    if (!Check(path.count != 0, Error::General)) return path.StartSubPath(0, 0);
    PdfSubPath& last = path.GetBack();
    if (!last.isClosed) return last;
    const PdfSubPath::Point start = last.points.back();
    return path.StartSubPath(start.x, start.y);
}

ClippingAction::Type Operator::GetClippingAction() const
{
    return stack->clippingAction;
}

void Operator::SetClippingAction(ClippingAction::Type action) const
{
    stack->SetClippingAction(action);
}

void Operator::SetCurrentCategory(OperatorCategory::Type category) const
{
    stack->SetCurrentCategory(category);
}

void Operator::FlushObjects() const
{
    stack->FlushObjects();
}

bool Operator::IsInCompatibility() const
{
    return stack->IsInCompatibility();
}

} // namespace Quillet
