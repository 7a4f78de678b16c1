#include "exporters/SvgPaint.h"

#include "exporters/Costs.h"
#include "exporters/NumberText.h"
#include "exporters/SvgElement.h"

#include <Quillet/Budget.h>

#include <Renderer/Colour.h>
#include <Renderer/FillGradient.h>

#include <algorithm>
#include <array>

namespace Host {

using namespace Quillet;
using Geometry::WindingOrderMode;

namespace {

void SetLine(pugi::xml_node node, const Renderer::LineStyleDescriptor& descriptor, double scale)
{
    const Renderer::LineStyle& style = *descriptor.lineStyle;
    const int decimals = GetDecimals(scale, 1e-4);
    const double width = style.width / scale;
    Set(node, "stroke-width", MakeNumber(width, decimals));
    if (style.cap != Renderer::LineStyle::CapButt) {
        Set(node, "stroke-linecap", style.cap == Renderer::LineStyle::CapHalfCircle ? "round" : "square");
    }
    if (style.join == Renderer::LineStyle::JoinRound)
        Set(node, "stroke-linejoin", "round");
    else if (style.join == Renderer::LineStyle::JoinBevel)
        Set(node, "stroke-linejoin", "bevel");
    else
        Set(node, "stroke-miterlimit", MakeNumber(std::max(style.mitreLimit, 1.0)));
    if (style.dashKind == Renderer::LineStyle::DashDashed) {
        std::string dashes;
        for (const double dash : style.dashes) {
            if (!Budget::Spend(Costs::c_segment)) break;
            if (!dashes.empty()) dashes += ' ';
            AppendNumber(dashes, dash * width, decimals);
        }
        Set(node, "stroke-dasharray", dashes);
        if (style.dashPhase != 0) Set(node, "stroke-dashoffset", MakeNumber(style.dashPhase * width, decimals));
    }
    if (descriptor.isBehindFill) Set(node, "paint-order", "stroke");
}

} // namespace

void SvgPaint::SetFill(pugi::xml_node node, const Renderer::FillDescriptor& descriptor, const Params& toElement)
{
    SetPaint(node, "fill", "fill-opacity", descriptor, toElement);
}

void SvgPaint::SetStroke(pugi::xml_node node, const Renderer::FillDescriptor& descriptor,
                         const Renderer::LineStyleDescriptor& line, double scale, const Params& toElement)
{
    SetPaint(node, "stroke", "stroke-opacity", descriptor, toElement);
    SetLine(node, line, scale > 0 ? scale : 1);
}

void SvgPaint::SetClip(pugi::xml_node node, const Geometry::PolyCurveDbl& path, WindingOrderMode winding,
                       const Params& toPage)
{
    // Runs of objects share one clip.
    const std::string data = MakePathData(path, toPage);
    const bool isEvenOdd = winding == WindingOrderMode::EvenOdd;
    auto& known = isEvenOdd ? evenOddClips : nonZeroClips;
    auto found = known.find(data);
    if (found == known.end()) {
        const std::size_t number = nonZeroClips.size() + evenOddClips.size() + 1;
        pugi::xml_node clip = Append(defs, "clipPath");
        Set(clip, "id", MakeClipName(number));
        Set(clip, "clipPathUnits", "userSpaceOnUse");
        pugi::xml_node shape = Append(clip, "path");
        found = known.emplace(Set(shape, "d", data), number).first;
        if (isEvenOdd) Set(shape, "clip-rule", "evenodd");
    }
    Set(node, "clip-path", "url(#" + MakeClipName(found->second) + ")");
}

void SvgPaint::SetPaint(pugi::xml_node node, const char* name, const char* opacityName,
                        const Renderer::FillDescriptor& descriptor, const Params& toElement)
{
    if (!descriptor.IsEmpty() && descriptor.fill->GetKind() == Renderer::Fill::Kind::Gradient) {
        const auto& fill = static_cast<const Renderer::FillGradient&>(*descriptor.fill);
        Set(node, name, "url(#" + AddGradient(fill, toElement * descriptor.transform) + ")");
        return;
    }
    const auto colour = descriptor.IsEmpty() ? nullptr : descriptor.fill->GetColour();
    if (!colour) {
        Set(node, name, "none");
        return;
    }
    Set(node, name, MakeColourCode(*colour, profiles));
    const double alpha = GetOpacity(*colour);
    if (alpha != 1) Set(node, opacityName, MakeNumber(alpha));
}

std::string SvgPaint::AddGradient(const Renderer::FillGradient& fill, const Params& placement)
{
    const bool isLinear = fill.type == Renderer::FillGradient::Linear;
    pugi::xml_node gradient = Append(defs, isLinear ? "linearGradient" : "radialGradient");
    std::string id = prefix + "gradient-" + std::to_string(++gradientCount);
    Set(gradient, "id", id);
    // It runs over the unit square, or from the centre of the unit circle to its edge.
    Set(gradient, "gradientUnits", "userSpaceOnUse");
    for (const char* attribute : isLinear ? std::array{"x1", "y1", "y2"} : std::array{"cx", "cy", "fx"})
        Set(gradient, attribute, "0");
    Set(gradient, isLinear ? "x2" : "r", "1");
    Set(gradient, "gradientTransform", MakeTransform(placement));
    for (const Renderer::ColourPosition& position : fill.gradient->stops) {
        if (!Budget::Spend(Costs::c_svgElement)) break;
        pugi::xml_node stop = Append(gradient, "stop");
        Set(stop, "offset", MakeNumber(position.position));
        Set(stop, "stop-color", MakeColourCode(*position.colour, profiles));
        const double alpha = GetOpacity(*position.colour);
        if (alpha != 1) Set(stop, "stop-opacity", MakeNumber(alpha));
    }
    return id;
}

std::string MakeColourCode(const Renderer::Colour& colour, const Raster::ICCManager::ICCProfileSet& profiles)
{
    const auto pixel = colour.GetRgbaPixel(profiles);
    std::string text = "#000000";
    const float channels[] = {pixel.red, pixel.green, pixel.blue};
    for (std::size_t i = 0; i < 3; ++i) {
        const auto value = static_cast<unsigned>(std::clamp(channels[i], 0.0f, 1.0f) * 255.0f + 0.5f);
        text[1 + 2 * i] = "0123456789abcdef"[value >> 4];
        text[2 + 2 * i] = "0123456789abcdef"[value & 15];
    }
    return text;
}

double GetOpacity(const Renderer::Colour& colour)
{
    return std::clamp(static_cast<double>(colour.GetAlpha()), 0.0, 1.0);
}

std::string MakeBlendName(Renderer::FillBlendMode::BlendMode mode)
{
    // "ColorDodge" is "color-dodge" in CSS.
    std::string name;
    for (const char* letter = Renderer::FillBlendMode::GetName(mode); *letter; ++letter) {
        const bool isCapital = *letter >= 'A' && *letter <= 'Z';
        if (isCapital && !name.empty()) name += '-';
        name += static_cast<char>(isCapital ? *letter - 'A' + 'a' : *letter);
    }
    return name;
}

void AddBlendMode(std::string& style, Renderer::FillBlendMode::BlendMode mode)
{
    if (mode != Renderer::FillBlendMode::Normal) AddStyle(style, ("mix-blend-mode:" + MakeBlendName(mode)).c_str());
}

Kernel::Counted<Geometry::PolyCurveDbl> MakeMoved(const Geometry::PolyCurveDbl& path,
                                                  const Raster::AffineTransform::Params& transform)
{
    for (const auto& curve : path) {
        if (!Budget::Spend(Costs::c_movedSegment * (curve->GetSegmentCount() + 1)))
            return Kernel::MakeCounted<Geometry::PolyCurveDbl>();
    }
    auto moved = path.Clone();
    moved->Transform(transform);
    return moved;
}

} // namespace Host
