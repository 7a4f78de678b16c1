#include "exporters/ColourValues.h"

#include <Renderer/ColourCMYK.h>
#include <Renderer/ColourGrayscale.h>
#include <Renderer/ColourLAB.h>
#include <Renderer/ColourNamed.h>
#include <Renderer/ColourRGB.h>
#include <Renderer/ColourRegistration.h>

namespace Host {

using namespace Renderer;

ColourValues::ColourValues(const Colour& colour)
{
    const Colour* const any = &colour;
    if (dynamic_cast<const ColourNamed*>(any)) {
        model = "named";
        values = {colour.tint};
    } else if (dynamic_cast<const ColourRegistration*>(any)) {
        model = "registration";
        values = {colour.tint};
    } else if (const auto* gray = dynamic_cast<const ColourGrayscale*>(any)) {
        model = "gray";
        values = {gray->pixel.intensity};
    } else if (const auto* rgb = dynamic_cast<const ColourRGB*>(any)) {
        model = "rgb";
        values = {rgb->pixel.red, rgb->pixel.green, rgb->pixel.blue};
    } else if (const auto* cmyk = dynamic_cast<const ColourCMYK*>(any)) {
        model = "cmyk";
        values = {cmyk->pixel.cyan, cmyk->pixel.magenta, cmyk->pixel.yellow, cmyk->pixel.black};
    } else if (const auto* lab = dynamic_cast<const ColourLAB*>(any)) {
        model = "lab";
        const ColourLAB::LabValues components = lab->GetLab();
        values = {components.lightness, components.a, components.b};
    }
}

} // namespace Host
