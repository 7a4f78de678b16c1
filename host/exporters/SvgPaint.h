#pragma once

#include <Geometry/AffineTransform.h>
#include <Geometry/PolyCurveDbl.h>
#include <Geometry/WindingOrderMode.h>
#include <Renderer/FillBlendMode.h>
#include <Renderer/FillDescriptor.h>
#include <Renderer/LineStyleDescriptor.h>

#include <Raster/ICCManager.h>

#include <cstddef>
#include <string>
#include <unordered_map>
#include <utility>

namespace Renderer {
class Colour;
class FillGradient;
} // namespace Renderer

namespace Host {

class XmlWriter;

/// How the elements of an SVG, each the one that has just begun, look: colours as sRGB by way of `profiles`, gradients,
/// which stand in its "defs", and clips, which stand there once for all who use them.
class SvgPaint
{
public:
    using Params = Raster::AffineTransform::Params;

    /// Names of clips and gradients begin with `namePrefix`: they are those of a whole file.
    SvgPaint(const Raster::ICCManager::ICCProfileSet& usedProfiles, XmlWriter& definitions, std::string namePrefix)
        : profiles(usedProfiles), defs(definitions), prefix(std::move(namePrefix))
    {}

    /// `toElement` leads from the space of the object to that of the element's data.
    void SetFill(XmlWriter& svg, const Renderer::FillDescriptor& descriptor, const Params& toElement = {});
    /// `scale` leads from the space of the element's data to the page, on which the style's lengths are points.
    void SetStroke(XmlWriter& svg, const Renderer::FillDescriptor& descriptor,
                   const Renderer::LineStyleDescriptor& line, double scale, const Params& toElement = {});
    /// `path` is in the space of the element that it clips, from which `toPage` leads to the page.
    void SetClip(XmlWriter& svg, const Geometry::PolyCurveDbl& path, Geometry::WindingOrderMode winding,
                 const Params& toPage);

private:
    std::string MakeClipName(std::size_t number) const { return prefix + "clip-" + std::to_string(number); }
    void SetPaint(XmlWriter& svg, const char* name, const char* opacityName, const Renderer::FillDescriptor& descriptor,
                  const Params& toElement);
    /// The name of a gradient in "defs".
    std::string AddGradient(const Renderer::FillGradient& fill, const Params& placement);

    const Raster::ICCManager::ICCProfileSet& profiles;
    XmlWriter& defs;
    const std::string prefix;
    /// The numbers of those in use, by their path data.
    std::unordered_map<std::string, std::size_t> nonZeroClips;
    std::unordered_map<std::string, std::size_t> evenOddClips;
    std::size_t gradientCount = 0;
};

/// "#rrggbb".
std::string MakeColourCode(const Renderer::Colour& colour, const Raster::ICCManager::ICCProfileSet& profiles);
/// Between 0 and 1.
double GetOpacity(const Renderer::Colour& colour);

/// As CSS has it.
std::string MakeBlendName(Renderer::FillBlendMode::BlendMode mode);
/// Appends to the value of a "style".
void AddBlendMode(std::string& style, Renderer::FillBlendMode::BlendMode mode);

/// A copy of a path, put through a transform; empty if there is no more to pay for it.
Kernel::Counted<Geometry::PolyCurveDbl> MakeMoved(const Geometry::PolyCurveDbl& path,
                                                  const Raster::AffineTransform::Params& transform);

} // namespace Host
