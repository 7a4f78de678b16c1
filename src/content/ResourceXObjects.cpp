// The external objects among the resources.

#include "content/XObject.h"
#include "document/Dictionary.h"
#include "document/Resources.h"

namespace Quillet {

Kernel::Counted<const XObject> Resources::GetXObject(const std::string& name, XObjectType::Type type) const
{
    const Ref value = GetXObjects()->GetRef(name.c_str());
    if (value.IsNull()) return nullptr;
    return XObject::Make(value, Kernel::Counted<const Resources>(this), type, name);
}

} // namespace Quillet
