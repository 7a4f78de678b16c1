#include "content/TextOperators.h"

#include "document/ArgVec.h"
#include "content/GraphicsStateStack.h"
#include "document/Resources.h"
#include "fonts/Font.h"
#include "content/TextHandler.h"
#include "document/Limits.h"

#include <Quillet/Budget.h>

namespace Quillet {

namespace {

using Params = Raster::AffineTransform::Params;

/// Starts a line at `x`, `y` from the start of the present one.
void StartLine(TextHandler& handler, double x, double y)
{
    handler.SetLtText(handler.ltTextLineStart * Params::Translation(x, y));
    handler.SetLtTextLineStart();
}

} // namespace

void OpBeginText::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Page, args, 0);
    SetCurrentCategory(OperatorCategory::Text);
    GetTextHandler().BeginText();
}

void OpEndText::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Text, args, 0);
    GetTextHandler().EndText();
    SetCurrentCategory(OperatorCategory::Page);
}

void OpTextFont::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Page | OperatorCategory::Text, args, 2);
    Budget::Spend(Limits::c_paintUnits);
    const std::string& name = args.GetName(0);
    const double size = args.GetReal(1);
    const Kernel::Counted<const Resources> resources = GetResources();
    Kernel::Counted<const Font> font = resources ? resources->GetFont(name) : nullptr;
    if (!Check(static_cast<bool>(font), Error::General)) font = Font::GetDefaultFont();
    GetState().SetFont(std::move(font), size);
}

void OpTextPosition::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Text, args, 2);
    const double x = args.GetReal(0);
    const double y = args.GetReal(1);
    if (isSetLeading) GetState().SetLeading(-y);
    StartLine(GetTextHandler(), x, y);
}

void OpTextMatrix::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Text, args, 6);
    Params matrix = args.GetMatrix();
    matrix.EnsureHasInverse();
    GetTextHandler().SetLtText(matrix);
    GetTextHandler().SetLtTextLineStart();
}

void OpTextOut::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Text, args, 1);
    GetTextHandler().TextOut(args.GetStringBuf(0));
}

void OpTextOutArray::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Text, args, -1);
    for (int i = 0; i < args.count; ++i) {
        switch (args.GetType(i)) {
        case Token::TokenInt:
        case Token::TokenReal:
            GetTextHandler().TextKern(args.GetReal(i));
            break;
        case Token::TokenString:
            GetTextHandler().TextOut(args.GetStringBuf(i));
            break;
        default:
            OnError(Error::General);
        }
    }
}

void OpNewLine::Execute(const ArgVec& args) const
{
    const int spacingCount = hasSpacing ? 2 : 0;
    CheckCall(OperatorCategory::Text, args, spacingCount + (hasString ? 1 : 0));
    GraphicsState& state = GetState();
    StartLine(GetTextHandler(), 0, -state.leading);
    if (hasSpacing) {
        state.SetWordSpace(args.GetReal(0));
        state.SetCharSpace(args.GetReal(1));
    }
    if (hasString) GetTextHandler().TextOut(args.GetStringBuf(args.count - 1));
}

} // namespace Quillet
