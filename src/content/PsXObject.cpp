#include "content/PsXObject.h"

namespace Quillet {

bool PsXObject::Accept(Kernel::NonCounted<GraphicsStateStack>, bool) const
{
    return false;
}

} // namespace Quillet
