#include "content/GeneralOperators.h"

#include "document/ArgVec.h"
#include "content/GraphicsStateStack.h"

namespace Quillet {

void OpDefault::Execute(const ArgVec&) const {}

void OpIgnore::Execute(const ArgVec&) const {}

void OpCompatibility::Execute(const ArgVec&) const
{
    stack->OnCompatibility(isBegin);
}

void OpSet1Real::Execute(const ArgVec& args) const
{
    if (CheckCall(mask, args, 1)) (GetState().*setter)(args.GetReal(0));
}

std::string OpSet1Real::GetName() const
{
    return name;
}

void OpSet1Int::Execute(const ArgVec& args) const
{
    if (CheckCall(mask, args, 1)) (GetState().*setter)(args.GetInt(0));
}

std::string OpSet1Int::GetName() const
{
    return name;
}

} // namespace Quillet
