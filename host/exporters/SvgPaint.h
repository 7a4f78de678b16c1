#pragma once

#include <Geometry/AffineTransform.h>
#include <Geometry/PolyCurveDbl.h>
#include <Geometry/WindingOrderMode.h>
#include <Renderer/FillBlendMode.h>
#include <Renderer/FillDescriptor.h>
#include <Renderer/LineStyleDescriptor.h>

#include <Raster/ICCManager.h>

#include <pugixml.hpp>

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace Renderer {
class Colour;
}

namespace Host {

/// How the elements of an SVG look: colours as sRGB by way of `profiles`, and clips, which stand in its "defs" once for
/// all who use them.
class SvgPaint
{
public:
    using Params = Raster::AffineTransform::Params;

    /// Names of clips begin with `clipPrefix`: they are those of a whole file.
    SvgPaint(const Raster::ICCManager::ICCProfileSet& usedProfiles, pugi::xml_node clipParent, std::string clipPrefix)
        : profiles(usedProfiles), defs(clipParent), prefix(std::move(clipPrefix))
    {}

    void SetFill(pugi::xml_node node, const Renderer::FillDescriptor& descriptor) const;
    /// `scale` leads from the space of the element's data to the page, on which the style's lengths are points.
    void SetStroke(pugi::xml_node node, const Renderer::FillDescriptor& descriptor,
                   const Renderer::LineStyleDescriptor& line, double scale) const;
    /// `path` is in the space of the element that it clips, from which `toPage` leads to the page.
    void SetClip(pugi::xml_node node, const Geometry::PolyCurveDbl& path, Geometry::WindingOrderMode winding,
                 const Params& toPage);

private:
    std::string MakeClipName(std::size_t number) const { return prefix + "clip-" + std::to_string(number); }
    void SetPaint(pugi::xml_node node, const char* name, const char* opacityName,
                  const Renderer::FillDescriptor& descriptor) const;

    const Raster::ICCManager::ICCProfileSet& profiles;
    pugi::xml_node defs;
    const std::string prefix;
    /// The numbers of those in use, by their path data, which the document keeps.
    std::unordered_map<std::string_view, std::size_t> nonZeroClips;
    std::unordered_map<std::string_view, std::size_t> evenOddClips;
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
