#include "objects/reduction/Reduce.h"

#include <cmath>

namespace Quillet {

namespace {

constexpr double c_opacityTolerance = 1e-6;

} // namespace

bool GroupObject::CanCombineLayer(const GroupObject& other) const
{
    return !name.empty() && name == other.name && isIsolated == other.isIsolated && isKnockout == other.isKnockout &&
           isXObject == other.isXObject && blendMode == other.blendMode &&
           std::abs(opacity - other.opacity) <= c_opacityTolerance && !clipPath && !other.clipPath;
}

void GroupObject::CombineAdjacentLayers()
{
    Kernel::Counted<GroupObject> last;
    Reduction::EraseChildren(*this, [&](Object& child) {
        const Kernel::Counted<GroupObject> layer = child.AsGroup();
        if (!layer || !layer->IsLayer()) {
            last = nullptr;
            return false;
        }
        if (last && last->CanCombineLayer(*layer)) {
            last->AcquireContent(layer, layer->children.begin());
            return true;
        }
        last = layer;
        return false;
    });
}

} // namespace Quillet
