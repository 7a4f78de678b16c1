#pragma once

#include "content/FormXObject.h"

namespace Quillet {

class ColourSpace;
class GroupObject;
class Page;

/// A form with a group dictionary: it is composed by itself first, then painted with the caller's alpha, blend mode and
/// soft mask as one.
class QUILLET_API TransparencyXObject : public FormXObject
{
public:
    TransparencyXObject(Kernel::Counted<Dictionary> dictionary, Kernel::Counted<const Resources> inherited);
    ~TransparencyXObject() override;

    /// The tree of this object alone, on a stack of its own for `page`.
    Kernel::Counted<GroupObject> MakeObjects(Kernel::NonCounted<const Page> page) const;

    /// May be null.
    Kernel::Counted<const ColourSpace> groupColourSpace;
    bool isIsolated = false;
    bool isKnockout = false;

protected:
    /// Always makes its group, whatever `noGroup` says.
    void Draw(GraphicsStateStack& stack, bool noGroup) const override;
};

} // namespace Quillet
