#pragma once

#include <algorithm>

namespace Quillet {

/// To the nearest whole number, halves away from zero; 0 for what is no number. Held to what 32 bits can hold.
inline int Round(double value)
{
    // The largest double below a half: the half itself would take the number just below it upward.
    constexpr double c_almostHalf = 0.49999999999999994;
    if (!(value == value)) return 0;
    return static_cast<int>(
        std::clamp(value + (value < 0 ? -c_almostHalf : c_almostHalf), -2147483648.0, 2147483647.0));
}

} // namespace Quillet
