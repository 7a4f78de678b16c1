#include "content/Resources.h"

#include "colour/ColourSpace.h"
#include "colour/ColourSpaceFactory.h"
#include "content/XObject.h"
#include "document/Dictionary.h"
#include "fonts/Font.h"
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

Kernel::Counted<const ColourSpace> Resources::GetColourSpace(const std::string& name) const
{
    // The entry comes first: a space that is defined through its own name finds it, empty, and so ends.
    const auto [entry, isFirstLookUp] = colourSpaces.try_emplace(name);
    if (!isFirstLookUp) return entry->second;
    Budget::Spend(Limits::c_entryUnits + name.size());
    // What was cut short, or not built to its end, is read again by the next page.
    struct Entry
    {
        ~Entry()
        {
            if (!isWhole || Budget::IsSpent()) spaces.erase(name);
        }
        std::unordered_map<std::string, Kernel::Counted<const ColourSpace>>& spaces;
        std::string name;
        bool isWhole = false;
    } made{colourSpaces, name};
    Kernel::Counted<const ColourSpace> space = MakeColourSpace(name);
    colourSpaces[name] = space;
    made.isWhole = true;
    return space;
}

Kernel::Counted<const ColourSpace> Resources::MakeColourSpace(const std::string& name) const
{
    const Ref value = GetColourSpaces()->GetRef(name.c_str());
    const Kernel::NonCounted<ColourSpaceFactory> factory = GetColourSpaceFactory();
    if (value.IsNull() || !factory) return nullptr;
    return factory->Make(Kernel::MakeCounted<Parser>(value), this);
}

Kernel::Counted<const XObject> Resources::GetXObject(const std::string& name, XObjectType::Type type) const
{
    const Ref value = GetXObjects()->GetRef(name.c_str());
    if (value.IsNull()) return nullptr;
    return XObject::Make(value, Kernel::Counted<const Resources>(this), type, name);
}

Kernel::Counted<const Font> Resources::GetFont(const std::string& name) const
{
    // Not kept here: a new font map makes the document forget its fonts.
    const Ref value = GetFonts()->GetRef(name.c_str());
    return value.IsNull() ? nullptr : Font::Make(value, name);
}

void Resources::AddFonts(std::vector<Kernel::Font>& list, std::unordered_set<const Font*>& seen) const
{
    for (const std::string& name : GetFonts()->GetKeys()) {
        const auto font = GetFont(name);
        if (font && seen.insert(font.Get()).second) list.push_back(font->GetKernelFont());
    }
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
