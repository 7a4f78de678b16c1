#include "content/XObjectOperators.h"

#include "document/ArgVec.h"
#include "content/GraphicsStateStack.h"
#include "document/Resources.h"
#include "content/XObject.h"

namespace Quillet {

void OpXObject::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Page, args, 1);
    FlushObjects();
    Kernel::Counted<const XObject> object;
    if (const auto& resources = GetResources()) object = resources->GetXObject(args.GetName(0), XObjectType::Do);
    Check(object && object->Accept(stack, false), Error::UnimplementedFill);
}

} // namespace Quillet
