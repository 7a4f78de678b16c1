#include "graphics/OpShade.h"

#include "content/ArgVec.h"

namespace Quillet {

void OpShade::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Page, args, 1);
    args.GetName(0);
}

} // namespace Quillet
