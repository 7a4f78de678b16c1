#include <Kernel/Countable.h>

namespace Kernel {

void Countable::Destroy() const noexcept
{
    delete this;
}

} // namespace Kernel
