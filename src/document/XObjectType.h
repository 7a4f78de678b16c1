#pragma once

namespace Quillet {

/// What the caller wants an external object for. An object loaded as a mask may leave out its subtype.
namespace XObjectType {

enum Type : int {
    ExplicitMask = 2,
    SoftMaskGroup = 3,
    SoftMaskImage = 4,
    Do = 6,
};

} // namespace XObjectType

} // namespace Quillet
