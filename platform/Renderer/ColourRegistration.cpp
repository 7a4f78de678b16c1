#include <Renderer/ColourRegistration.h>

namespace Renderer {

namespace {

Raster::PixelCmykF MakeAllInks(double tint)
{
    const auto ink = static_cast<float>(tint);
    return Raster::PixelCmykF(ink, ink, ink, ink, 1.0f);
}

} // namespace

ColourRegistration::ColourRegistration(double registrationTint)
    : ColourCMYK(MakeAllInks(registrationTint), registrationTint, 1.0, "Registration")
{}

Kernel::Consolidated<Colour> ColourRegistration::Create(double tint)
{
    return Kernel::ConsolidateObjectPostAlloc(ColourRegistration(tint));
}

Kernel::Consolidated<Colour> ColourRegistration::MakeWithAlpha(float alpha) const
{
    ColourRegistration copy(*this);
    copy.pixel.alpha = alpha;
    return Kernel::ConsolidateObjectPostAlloc(copy);
}

Kernel::Counted<Colour> ColourRegistration::Clone() const
{
    return Kernel::MakeCounted<ColourRegistration>(*this);
}

} // namespace Renderer
