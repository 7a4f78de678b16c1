#include "content/OCProperties.h"

#include "document/Dictionary.h"

#include <algorithm>
#include <vector>

namespace Quillet {

namespace {

bool Lists(Dictionary& config, const char* key, const Ref& group)
{
    std::vector<Ref> groups;
    config.GetRefVec(key, groups);
    return std::find(groups.begin(), groups.end(), group) != groups.end();
}

} // namespace

OCProperties::OCProperties(const Ref& ref) : defaultConfig(Kernel::MakeCounted<Dictionary>(ref)->GetRef("D")) {}

bool OCProperties::IsHidden(const Ref& group) const
{
    return !defaultConfig.IsNull() && GetAnswer(group).isHidden;
}

bool OCProperties::IsLocked(const Ref& group) const
{
    return !defaultConfig.IsNull() && GetAnswer(group).isLocked;
}

const OCProperties::Answer& OCProperties::GetAnswer(const Ref& group) const
{
    const auto [entry, isNew] =
        answers.try_emplace({group.pos, group.number, group.generation, group.isIndirect}, Answer{});
    if (isNew) entry->second = ReadAnswer(group);
    return entry->second;
}

OCProperties::Answer OCProperties::ReadAnswer(const Ref& group) const
{
    const auto config = Kernel::MakeCounted<Dictionary>(defaultConfig);
    const bool isOff = config->GetName("BaseState") == "OFF" || Lists(*config, "OFF", group);
    return {isOff && !Lists(*config, "ON", group), Lists(*config, "Locked", group)};
}

} // namespace Quillet
