#include "colour/ColourSpace.h"

#include "colour/Function.h"
#include "colour/MultitoneBitmap.h"
#include "document/Dictionary.h"

#include <Renderer/FillSolid.h>

namespace Quillet {

bool ColourSpace::IsColouredPattern(const std::string&) const
{
    return false;
}

Kernel::Counted<const MultitoneBitmap> ColourSpace::LoadRawBitmap(Kernel::Counted<Dictionary>, Kernel::SizeT<int>,
                                                                  const ImageDecode&) const
{
    return nullptr;
}

Kernel::Counted<Raster::DynamicBitmap> ColourSpace::LoadBitmap(Kernel::Counted<const MultitoneBitmap>,
                                                               const Kernel::Counted<const Function>&) const
{
    return nullptr;
}

Kernel::Counted<Raster::DynamicBitmap> ColourSpace::LoadBitmap(Kernel::Counted<const MultitoneBitmap>,
                                                               const std::vector<Colour>&) const
{
    return nullptr;
}

Kernel::Counted<Raster::DynamicBitmap> ColourSpace::LoadBitmap(const unsigned char*, unsigned long, Kernel::SizeT<int>,
                                                               const ImageDecode&) const
{
    return nullptr;
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
