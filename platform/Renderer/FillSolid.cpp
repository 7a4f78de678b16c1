#include <Renderer/ColourGrayscale.h>
#include <Renderer/FillSolid.h>
#include <Renderer/ValueKey.h>

#include <algorithm>

namespace Renderer {

FillSolid::FillSolid(const Kernel::Consolidated<Colour>& solidColour)
    : colour(solidColour ? solidColour : ColourGrayscale::Create(0.0, 1.0, 1.0, {}))
{}

Kernel::Consolidated<Fill> FillSolid::MakeWithAlpha(double alpha) const
{
    // Written so that what is no number becomes 0.
    const double share = alpha > 0 ? std::min(alpha, 1.0) : 0.0;
    const double product = static_cast<double>(colour->GetAlpha()) * share;
    return Kernel::ConsolidateObjectPostAlloc(FillSolid(colour->MakeWithAlpha(static_cast<float>(product))));
}

std::size_t FillSolid::GetHash() const
{
    return HashOf(std::tuple(colour.Get()));
}

bool FillSolid::IsEqual(const Kernel::Consolidatable& other) const
{
    return colour == static_cast<const FillSolid&>(other).colour;
}

} // namespace Renderer
