#include "document/OCProperties.h"

#include "document/Dictionary.h"

#include <Quillet/Budget.h>

#include <utility>

namespace Quillet {

OCProperties::OCProperties(const Ref& ref) : defaultConfig(Kernel::MakeCounted<Dictionary>(ref)->GetRef("D")) {}

bool OCProperties::IsHidden(const Ref& group) const
{
    const Lists lists = GetLists();
    const Ref::Place place = group.GetPlace();
    return (lists->isBaseOff || lists->off.contains(place)) && !lists->on.contains(place);
}

bool OCProperties::IsLocked(const Ref& group) const
{
    return GetLists()->locked.contains(group.GetPlace());
}

OCProperties::Lists OCProperties::GetLists() const
{
    if (kept) return kept;
    auto read = std::make_shared<Configuration>();
    if (!defaultConfig.IsNull()) {
        Dictionary config(defaultConfig);
        read->isBaseOff = config.GetName("BaseState") == "OFF";
        for (const auto& [key, list] : {std::pair{"OFF", &read->off}, {"ON", &read->on}, {"Locked", &read->locked}}) {
            std::vector<Ref> groups;
            config.GetRefVec(key, groups);
            for (const Ref& group : groups) {
                if (!group.IsNull()) list->insert(group.GetPlace());
            }
        }
    }
    // What was cut short is read again by the next page.
    if (!Budget::IsSpent()) kept = read;
    return read;
}

} // namespace Quillet
