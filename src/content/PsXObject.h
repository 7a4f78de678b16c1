#pragma once

#include "content/XObject.h"

namespace Quillet {

/// A piece of PostScript for printers: it is known, and never drawn.
class QUILLET_API PsXObject : public XObject
{
public:
    bool Accept(Kernel::NonCounted<GraphicsStateStack> stack, bool noGroup) const override;
};

} // namespace Quillet
