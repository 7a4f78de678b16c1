#include "document/Resources.h"

#include "document/Dictionary.h"
#include "document/Limits.h"

#include <Quillet/Budget.h>

namespace Quillet {

Resources::Resources(const Ref& dictionaryRef) : ErrorForwarder(dictionaryRef.GetErrorHandler()), ref(dictionaryRef) {}

Resources::~Resources() = default;

Kernel::Counted<Dictionary> Resources::GetDictionary() const
{
    return Kernel::MakeCounted<Dictionary>(ref);
}

Kernel::Counted<Dictionary> Resources::GetSubDictionary(Kernel::Counted<Dictionary>& place, const char* key) const
{
    if (place) return place;
    auto made = Kernel::MakeCounted<Dictionary>(GetDictionary()->GetRef(key));
    if (!Budget::IsSpent()) place = made;
    return made;
}

Kernel::Counted<Dictionary> Resources::GetColourSpaces() const
{
    return GetSubDictionary(colourSpaceDictionary, "ColorSpace");
}

Kernel::Counted<Dictionary> Resources::GetXObjects() const
{
    return GetSubDictionary(xObjectDictionary, "XObject");
}

Kernel::Counted<Dictionary> Resources::GetFonts() const
{
    return GetSubDictionary(fontDictionary, "Font");
}

std::vector<std::string> Resources::GetXObjectKeys() const
{
    return GetXObjects()->GetKeys();
}

Kernel::NonCounted<ColourSpaceFactory> Resources::GetColourSpaceFactory() const
{
    return ref.GetColourSpaceFactory();
}

Ref Resources::GetExtGStateRef(const std::string& name) const
{
    return GetSubDictionary(extGStateDictionary, "ExtGState")->GetRef(name.c_str());
}

Kernel::Counted<Dictionary> Resources::GetProperties(const std::string& name) const
{
    if (const auto found = properties.find(name); found != properties.end()) return found->second;
    const Ref value = GetSubDictionary(propertiesDictionary, "Properties")->GetRef(name.c_str());
    if (value.IsNull()) return nullptr;
    auto made = Kernel::MakeCounted<Dictionary>(value);
    if (Budget::Spend(Limits::c_entryUnits + name.size())) properties[name] = made;
    return made;
}

Kernel::Counted<const Resources> Resources::GetTwin() const
{
    if (!twin) twin = Kernel::MakeCounted<const Resources>(ref);
    return twin;
}

} // namespace Quillet
