#include "colour/ColourSpace.h"

#include <Renderer/FillSolid.h>

namespace Quillet {

bool ColourSpace::IsColouredPattern(const std::string&) const
{
    return false;
}

Kernel::Counted<Renderer::FillDescriptor> ColourSpace::MakeFillDescriptor(const Colour& colour) const
{
    const auto fill = Kernel::ConsolidateObjectPostAlloc(Renderer::FillSolid(MakeColour(colour)));
    return Kernel::MakeCounted<Renderer::FillDescriptor>(fill, Renderer::FillBlendMode::Normal);
}

Kernel::Counted<Renderer::FillDescriptor> ColourSpace::MakeDefaultFillDescriptor() const
{
    return MakeFillDescriptor(Colour(GetComponentCount()));
}

Kernel::Counted<Renderer::FillDescriptor>
ColourSpace::MakePatternFillDescriptor(const Colour&, const std::string&, Kernel::NonCounted<GraphicsStateStack>) const
{
    return MakeDefaultFillDescriptor();
}

Kernel::Consolidated<Renderer::Colour> ColourSpace::MakeDefaultColour() const
{
    return MakeColour(Colour(GetComponentCount()));
}

} // namespace Quillet
