#include "content/ColourOperators.h"

#include "colour/ColourSpaceFactory.h"
#include "document/ArgVec.h"
#include "content/GraphicsStateStack.h"
#include "document/Limits.h"

#include <Quillet/Budget.h>

namespace Quillet {

namespace {

constexpr auto c_category = OperatorCategory::Page | OperatorCategory::Path | OperatorCategory::Text;

Colour GetColour(const ArgVec& args, int componentCount)
{
    Colour colour(componentCount);
    for (int i = 0; i < componentCount; ++i)
        colour.components[static_cast<std::size_t>(i)] = args.GetReal(i);
    return colour;
}

} // namespace

void OpSetColour::Execute(const ArgVec& args) const
{
    if (!Budget::Spend(Limits::c_paintUnits)) return;
    GraphicsState& state = GetState();
    if (space) state.SetColourSpace(isStroke, stack->context->*space);
    const Kernel::Counted<const ColourSpace> current = state.GetColourSpace(isStroke);
    if (!current->IsPattern()) {
        const int count = current->GetComponentCount();
        CheckCall(c_category, args, count);
        state.SetFillDescriptor(isStroke, current->MakeFillDescriptor(GetColour(args, count)));
        return;
    }
    const std::string name = args.count > 0 ? args.GetName(args.count - 1) : std::string();
    const int count = current->IsColouredPattern(name) ? 0 : current->GetComponentCount();
    CheckCall(c_category, args, count + 1);
    state.SetFillDescriptor(isStroke, current->MakePatternFillDescriptor(GetColour(args, count), name, stack));
}

void OpSetColour::AddRasterFormats(RasterFormatPicker& picker, const ArgVec&) const
{
    if (space) (stack->context->*space)->AddRasterFormats(picker, false);
}

Kernel::Counted<const ColourSpace> OpSetColourSpace::MakeSpace(const ArgVec& args) const
{
    return GetColourSpaceFactory()->Make(args.GetName(0), nullptr, GetResources());
}

void OpSetColourSpace::AddRasterFormats(RasterFormatPicker& picker, const ArgVec& args) const
{
    if (const auto space = MakeSpace(args)) space->AddRasterFormats(picker, false);
}

void OpSetColourSpace::Execute(const ArgVec& args) const
{
    CheckCall(c_category, args, 1);
    Budget::Spend(Limits::c_paintUnits);
    const auto space = MakeSpace(args);
    if (!space) return;
    GetState().SetColourSpace(isStroke, space);
    GetState().SetFillDescriptor(isStroke, space->MakeDefaultFillDescriptor());
}

} // namespace Quillet
