#include "exporters/SvgShapes.h"

#include "exporters/PathData.h"
#include "exporters/SvgElement.h"
#include "exporters/SvgPaint.h"
#include "exporters/XmlWriter.h"

#include <Quillet/LayerObject.h>
#include <Quillet/PathObject.h>

#include <cmath>
#include <string>

namespace Host {

using namespace Quillet;
using Geometry::WindingOrderMode;
using Params = Raster::AffineTransform::Params;

namespace {

/// Turns and mirrors, and scales both directions alike.
bool IsSimilarity(const Params& transform)
{
    const double x = std::hypot(transform.a, transform.b);
    const double y = std::hypot(transform.c, transform.d);
    const double skew = transform.a * transform.c + transform.b * transform.d;
    return x > 0 && std::abs(x - y) <= 1e-4 * x && std::abs(skew) <= 1e-4 * x * y;
}

} // namespace

void SvgShapes::BeginGroup(const GroupObject& group)
{
    svg.Begin("g");
    std::string style;
    if (group.IsLayer()) {
        const auto& layer = static_cast<const LayerObject&>(group);
        svg.Attribute("inkscape:groupmode", "layer");
        if (!layer.isEditable) svg.Attribute("sodipodi:insensitive", "true");
        if (!layer.isVisible) AddStyle(style, "display:none");
    }
    if (!group.name.empty()) svg.Attribute("inkscape:label", MakeXmlText(group.name));
    if (group.clipPath) paint.SetClip(svg, *group.clipPath, group.clipWinding, group.transform);
    if (group.opacity != 1) svg.Attribute("opacity", group.opacity);
    if (group.isIsolated) AddStyle(style, "isolation:isolate");
    AddBlendMode(style, group.blendMode);
    if (!style.empty()) svg.Attribute("style", style);
}

void SvgShapes::AddPath(const PathObject& object)
{
    if (!object.path) return;
    svg.Begin("path");
    const bool isStroked = object.IsStroked();
    // A line has one width on the page, which SVG can say only where x and y are scaled alike; elsewhere the path
    // itself moves to the page, and its clip with it.
    const bool isOnPage = isStroked && !IsSimilarity(object.transform);
    if (isOnPage) {
        SetPathData(svg, *MakeMoved(*object.path, object.transform), Params());
    } else {
        SetPathData(svg, *object.path, object.transform);
        if (!object.transform.IsIdentity(0)) SetTransform(svg, object.transform);
    }
    const Params toElement = isOnPage ? object.transform : Params();
    paint.SetFill(svg, *object.GetBrushDescriptor(), toElement);
    if (object.IsFilled() && object.winding == WindingOrderMode::EvenOdd) svg.Attribute("fill-rule", "evenodd");
    if (isStroked) {
        const double scale = isOnPage ? 1 : GetScale(object.transform);
        paint.SetStroke(svg, *object.penDescriptor, *object.lineStyleDescriptor, scale, toElement);
    }
    if (object.clipPath && isOnPage) {
        paint.SetClip(svg, *MakeMoved(*object.clipPath, object.transform), object.clipWinding, Params());
    } else if (object.clipPath) {
        paint.SetClip(svg, *object.clipPath, object.clipWinding, object.transform);
    }
    if (object.opacity != 1) svg.Attribute("opacity", object.opacity);
    std::string style;
    AddBlendMode(style, object.blendMode);
    if (!style.empty()) svg.Attribute("style", style);
    svg.End();
}

} // namespace Host
