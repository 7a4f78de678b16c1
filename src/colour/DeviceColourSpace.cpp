#include "colour/DeviceColourSpace.h"

namespace Quillet {

std::vector<double> DeviceColourSpace::GetDefaultDecodeVec(int) const
{
    std::vector<double> ranges;
    for (int i = 0; i < GetComponentCount(); ++i)
        ranges.insert(ranges.end(), {0.0, 1.0});
    return ranges;
}

} // namespace Quillet
