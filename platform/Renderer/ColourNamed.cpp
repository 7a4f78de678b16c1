#include <Renderer/ColourGrayscale.h>
#include <Renderer/ColourNamed.h>
#include <Renderer/ValueKey.h>

namespace Renderer {

namespace {

auto GetKey(const ColourNamed& colour)
{
    return std::tuple(colour.isSpot, colour.alternative.Get(), KeyOf(colour.tint), KeyOf(colour.intensity),
                      std::string_view(colour.name));
}

} // namespace

ColourNamed::ColourNamed(std::string colourName, bool isSpotInk, Kernel::Consolidated<Colour> shownAs,
                         double colourTint, double colourIntensity)
    : Colour(colourTint, colourIntensity, std::move(colourName)), isSpot(isSpotInk), alternative(std::move(shownAs))
{
    if (!alternative) alternative = ColourGrayscale::Create(0.0, 1.0, 1.0, {});
}

Kernel::Consolidated<Colour> ColourNamed::MakeWithAlpha(float alpha) const
{
    ColourNamed copy(*this);
    copy.alternative = alternative->MakeWithAlpha(alpha);
    return Kernel::ConsolidateObjectPostAlloc(copy);
}

Kernel::Counted<Colour> ColourNamed::Clone() const
{
    return Kernel::MakeCounted<ColourNamed>(*this);
}

std::size_t ColourNamed::GetHash() const
{
    return HashOf(GetKey(*this));
}

bool ColourNamed::IsEqual(const Kernel::Consolidatable& other) const
{
    return GetKey(*this) == GetKey(static_cast<const ColourNamed&>(other));
}

} // namespace Renderer
