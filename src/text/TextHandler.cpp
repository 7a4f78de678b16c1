#include "text/TextHandler.h"

#include "content/GraphicsStateStack.h"

namespace Quillet {

GraphicsState& TextHandler::GetState() const
{
    return stack->GetTop();
}

void TextHandler::BeginText()
{
    SetLtText(Params{});
    SetLtTextLineStart();
}

void TextHandler::EndText()
{
    FlushText();
}

void TextHandler::SetLtText(const Params& transform)
{
    ltText = transform;
    isLtTextSet = true;
}

void TextHandler::FlushText() {}

void TextHandler::OnGraphicsStateChanging() {}

} // namespace Quillet
