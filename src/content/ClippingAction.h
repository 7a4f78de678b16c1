#pragma once

namespace Quillet::ClippingAction {

/// What the next painting operator does to the clip. The first two equal the winding modes of `Geometry`.
enum Type : int {
    EvenOdd = 0,
    NonZero = 1,
    None = 2,
};

} // namespace Quillet::ClippingAction
