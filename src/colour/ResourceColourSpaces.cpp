// The colour spaces among the resources.

#include "colour/ColourSpace.h"
#include "colour/ColourSpaceFactory.h"
#include "document/Dictionary.h"
#include "document/Limits.h"
#include "document/Resources.h"

#include <Quillet/Budget.h>

#include <string>
#include <unordered_map>

namespace Quillet {

Kernel::Counted<const ColourSpace> Resources::GetColourSpace(const std::string& name) const
{
    // The entry comes first: a space that is defined through its own name finds it, empty, and so ends.
    const auto [entry, isFirstLookUp] = colourSpaces.try_emplace(name);
    if (!isFirstLookUp) return static_cast<const ColourSpace*>(entry->second.Get());
    Budget::Spend(Limits::c_entryUnits + name.size());
    // What was cut short, or not built to its end, is read again by the next page.
    struct Entry
    {
        ~Entry()
        {
            if (!isWhole || Budget::IsSpent()) spaces.erase(name);
        }
        std::unordered_map<std::string, Kernel::Counted<const RefCacheable>>& spaces;
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

} // namespace Quillet
