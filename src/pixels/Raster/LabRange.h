#pragma once

namespace Raster {

/// What the ends of an unsigned channel of a and b stand for.
struct LabRange
{
    double aMinimum = -128;
    double aMaximum = 127;
    double bMinimum = -128;
    double bMaximum = 127;
};

} // namespace Raster
