#include <Renderer/FillNone.h>

namespace Renderer {

Kernel::Consolidated<Fill> FillNone::Get()
{
    static const Kernel::Consolidated<Fill> none = Kernel::ConsolidateObjectPostAlloc(FillNone());
    return none;
}

Kernel::Consolidated<Fill> FillNone::MakeWithAlpha(double) const
{
    return Get();
}

} // namespace Renderer
