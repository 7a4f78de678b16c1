#pragma once

namespace Geometry {

/// Which points count as inside a path.
enum class WindingOrderMode {
    EvenOdd = 0,
    NonZero = 1,
};

} // namespace Geometry
