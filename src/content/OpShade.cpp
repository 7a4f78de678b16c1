#include "content/OpShade.h"

#include "document/ArgVec.h"

namespace Quillet {

void OpShade::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Page, args, 1);
    // Nothing draws them yet.
    Check(args.GetName(0).empty(), Error::UnimplementedShading);
}

} // namespace Quillet
