#include "objects/reduction/Reduce.h"

namespace Quillet {

void GroupObject::RemoveEmptyGroups()
{
    Reduction::EraseChildren(*this, [](const Object& child) {
        const GroupObject* group = child.AsGroup();
        return group && group->children.empty() && !group->IsLayer();
    });
}

} // namespace Quillet
