#include "content/XObject.h"

#include "content/FormXObject.h"
#include "content/PsXObject.h"
#include "document/Resources.h"
#include "content/TransparencyXObject.h"
#include "document/Dictionary.h"

namespace Quillet {

Kernel::Counted<const XObject> XObject::Make(const Ref& ref, Kernel::Counted<const Resources> resources,
                                             XObjectType::Type type, const std::string& name)
{
    if (auto cached = ref.GetCache<XObject>()) return cached;
    auto made = Make2(ref, std::move(resources), type, name);
    ref.SetCache(made);
    return made;
}

Kernel::Counted<const XObject> XObject::Make2(const Ref& ref, Kernel::Counted<const Resources> resources,
                                              XObjectType::Type, const std::string&)
{
    const auto dictionary = Kernel::MakeCounted<Dictionary>(ref);
    const std::string subtype = dictionary->GetName("Subtype");
    if (subtype == "PS") return Kernel::MakeCounted<const PsXObject>();
    if (subtype != "Form") return nullptr;
    if (dictionary->GetRef("Group").IsNull()) {
        return Kernel::MakeCounted<const FormXObject>(dictionary, std::move(resources));
    }
    return Kernel::MakeCounted<const TransparencyXObject>(dictionary, std::move(resources));
}

Kernel::Counted<const Resources> XObject::GetResources(Kernel::Counted<Dictionary> dictionary,
                                                       Kernel::Counted<const Resources> inherited)
{
    const Ref own = dictionary->GetRef("Resources");
    if (own.IsNull()) return inherited;
    return Kernel::MakeCounted<const Resources>(own);
}

} // namespace Quillet
