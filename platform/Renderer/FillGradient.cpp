#include <Renderer/FillGradient.h>
#include <Renderer/ValueKey.h>

#include <algorithm>

namespace Renderer {

FillGradient::FillGradient(FillGradientType gradientType, const Kernel::Consolidated<Gradient>& ramp)
    : type(gradientType), gradient(ramp)
{}

Kernel::Consolidated<Fill> FillGradient::MakeWithAlpha(double alpha) const
{
    // Written so that what is no number becomes 0.
    const double share = alpha > 0 ? std::min(alpha, 1.0) : 0.0;
    return Kernel::ConsolidateObjectPostAlloc(FillGradient(type, gradient ? gradient->MakeWithAlpha(share) : gradient));
}

std::size_t FillGradient::GetHash() const
{
    return HashOf(std::tuple(static_cast<int>(type), gradient.Get()));
}

bool FillGradient::IsEqual(const Kernel::Consolidatable& other) const
{
    const auto& fill = static_cast<const FillGradient&>(other);
    return type == fill.type && gradient == fill.gradient;
}

} // namespace Renderer
