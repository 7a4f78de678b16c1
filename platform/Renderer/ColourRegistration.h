#pragma once

#include <Renderer/ColourCMYK.h>

namespace Renderer {

/// The colour of register and crop marks, which prints on every plate. Shown as all process inks at its tint.
class QUILLET_API ColourRegistration : public ColourCMYK
{
public:
    explicit ColourRegistration(double registrationTint);
    static Kernel::Consolidated<Colour> Create(double tint);

    Kernel::Consolidated<Colour> MakeWithAlpha(float alpha) const override;
    Kernel::Counted<Colour> Clone() const override;
};

} // namespace Renderer
