#include "exporters/SvgPaint.h"

#include "exporters/Costs.h"
#include "exporters/NumberText.h"
#include "exporters/SvgElement.h"
#include "exporters/XmlWriter.h"

#include <Quillet/Budget.h>

#include <Renderer/Colour.h>
#include <Renderer/FillGradient.h>

#include <algorithm>
#include <array>

namespace Host {

using namespace Quillet;
using Geometry::WindingOrderMode;

namespace {

void SetLine(XmlWriter& svg, const Renderer::LineStyleDescriptor& descriptor, double scale)
{
    const Renderer::LineStyle& style = *descriptor.lineStyle;
    const int decimals = GetDecimals(scale, 1e-4);
    const double width = style.width / scale;
    svg.Attribute("stroke-width", width, decimals);
    if (style.cap != Renderer::LineStyle::CapButt) {
        svg.Attribute("stroke-linecap", style.cap == Renderer::LineStyle::CapHalfCircle ? "round" : "square");
    }
    if (style.join == Renderer::LineStyle::JoinRound)
        svg.Attribute("stroke-linejoin", "round");
    else if (style.join == Renderer::LineStyle::JoinBevel)
        svg.Attribute("stroke-linejoin", "bevel");
    else
        svg.Attribute("stroke-miterlimit", std::max(style.mitreLimit, 1.0));
    if (style.dashKind == Renderer::LineStyle::DashDashed) {
        std::string dashes;
        for (const double dash : style.dashes) {
            if (!Budget::Spend(Costs::c_segment)) break;
            if (!dashes.empty()) dashes += ' ';
            AppendNumber(dashes, dash * width, decimals);
        }
        svg.Attribute("stroke-dasharray", dashes);
        if (style.dashPhase != 0) svg.Attribute("stroke-dashoffset", style.dashPhase * width, decimals);
    }
    if (descriptor.isBehindFill) svg.Attribute("paint-order", "stroke");
}

} // namespace

void SvgPaint::SetFill(XmlWriter& svg, const Renderer::FillDescriptor& descriptor, const Params& toElement)
{
    SetPaint(svg, "fill", "fill-opacity", descriptor, toElement);
}

void SvgPaint::SetStroke(XmlWriter& svg, const Renderer::FillDescriptor& descriptor,
                         const Renderer::LineStyleDescriptor& line, double scale, const Params& toElement)
{
    SetPaint(svg, "stroke", "stroke-opacity", descriptor, toElement);
    SetLine(svg, line, scale > 0 ? scale : 1);
}

void SvgPaint::SetClip(XmlWriter& svg, const Geometry::PolyCurveDbl& path, WindingOrderMode winding,
                       const Params& toPage)
{
    // Runs of objects share one clip.
    std::string data = MakePathData(path, toPage);
    const bool isEvenOdd = winding == WindingOrderMode::EvenOdd;
    auto& known = isEvenOdd ? evenOddClips : nonZeroClips;
    const std::size_t number = nonZeroClips.size() + evenOddClips.size() + 1;
    const auto [clip, isNew] = known.try_emplace(std::move(data), number);
    if (isNew) {
        defs.Begin("clipPath");
        defs.Attribute("id", MakeClipName(number));
        defs.Attribute("clipPathUnits", "userSpaceOnUse");
        defs.Begin("path");
        defs.Attribute("d", clip->first);
        if (isEvenOdd) defs.Attribute("clip-rule", "evenodd");
        defs.End();
        defs.End();
    }
    svg.Attribute("clip-path", "url(#" + MakeClipName(clip->second) + ")");
}

void SvgPaint::SetPaint(XmlWriter& svg, const char* name, const char* opacityName,
                        const Renderer::FillDescriptor& descriptor, const Params& toElement)
{
    if (!descriptor.IsEmpty() && descriptor.fill->GetKind() == Renderer::Fill::Kind::Gradient) {
        const auto& fill = static_cast<const Renderer::FillGradient&>(*descriptor.fill);
        svg.Attribute(name, "url(#" + AddGradient(fill, toElement * descriptor.transform) + ")");
        return;
    }
    const auto colour = descriptor.IsEmpty() ? nullptr : descriptor.fill->GetColour();
    if (!colour) {
        svg.Attribute(name, "none");
        return;
    }
    svg.Attribute(name, MakeColourCode(*colour, profiles));
    const double alpha = GetOpacity(*colour);
    if (alpha != 1) svg.Attribute(opacityName, alpha);
}

std::string SvgPaint::AddGradient(const Renderer::FillGradient& fill, const Params& placement)
{
    const bool isLinear = fill.type == Renderer::FillGradient::Linear;
    std::string id = prefix + "gradient-" + std::to_string(++gradientCount);
    defs.Begin(isLinear ? "linearGradient" : "radialGradient");
    defs.Attribute("id", id);
    // It runs over the unit square, or from the centre of the unit circle to its edge.
    defs.Attribute("gradientUnits", "userSpaceOnUse");
    for (const char* attribute : isLinear ? std::array{"x1", "y1", "y2"} : std::array{"cx", "cy", "fx"})
        defs.Attribute(attribute, "0");
    defs.Attribute(isLinear ? "x2" : "r", "1");
    SetTransform(defs, placement, "gradientTransform");
    for (const Renderer::ColourPosition& position : fill.gradient->stops) {
        if (!Budget::Spend(Costs::c_svgElement)) break;
        defs.Begin("stop");
        defs.Attribute("offset", position.position);
        defs.Attribute("stop-color", MakeColourCode(*position.colour, profiles));
        const double alpha = GetOpacity(*position.colour);
        if (alpha != 1) defs.Attribute("stop-opacity", alpha);
        defs.End();
    }
    defs.End();
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
