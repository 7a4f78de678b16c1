#pragma once

#include <Quillet/GroupObject.h>

#include <Kernel/Counted.h>

namespace Quillet {

/// A marked-content sequence that is open.
struct MarkedContent
{
    /// The newest object when the sequence began: a leaf, an empty group, or null.
    Kernel::Counted<Object> previousObject;
    /// To be filled when the sequence ends; null for a sequence that makes no layer.
    Kernel::Counted<GroupObject> layer;
};

} // namespace Quillet
