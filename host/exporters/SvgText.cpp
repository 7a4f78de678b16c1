#include "exporters/SvgText.h"

#include "exporters/Costs.h"
#include "exporters/PathData.h"
#include "exporters/SvgElement.h"
#include "exporters/SvgPaint.h"
#include "exporters/SvgWords.h"
#include "exporters/TextRuns.h"
#include "exporters/XmlWriter.h"

#include <Quillet/Budget.h>
#include <Quillet/TextLineObject.h>

#include <algorithm>
#include <cmath>

namespace Host {

using namespace Quillet;
using Params = Raster::AffineTransform::Params;

namespace {

/// A text element for each run: only an element can be scaled and slanted.
void AddRun(XmlWriter& svg, const TextLineObject& line, const TextRun& run, SvgPaint& paint)
{
    using namespace Story::GlyphAtt;
    const Story::GlyphAtts& atts = *run.first->atts;
    const double size = atts.GetSize();
    const double scale = atts.Get(HorizontalScale);
    if (!(size > 0) || !std::isfinite(scale) || scale == 0) return;

    svg.Begin("text");
    const auto position = line.GetGdiPosition();
    // Em space to the page, with the size left to the font.
    Params placement = atts.GetGlyphTransform({position.x + run.start, position.y + atts.Get(BaselineShift)});
    placement = line.transform * placement * Params::Scale(1 / size, 1 / size);
    SetTransform(svg, placement);
    svg.Attribute("xml:space", "preserve");
    SetFont(svg, atts, false);
    paint.SetFill(svg, *atts.GetFill(Story::GlyphAtt::Fill));
    if (Renderer::LineStyleDescriptor::IsLineStyleVisible(atts.GetLineStyle(), atts.GetFill(StrokeFill))) {
        paint.SetStroke(svg, *atts.GetFill(StrokeFill), *atts.GetLineStyle(), GetScale(placement));
    }
    if (line.clipPath) {
        const auto clip = MakeMoved(*line.clipPath, placement.GetInverse() * line.transform);
        paint.SetClip(svg, *clip, line.clipWinding, placement);
    }
    std::string style;
    AddBlendMode(style, line.blendMode);
    AddDecorations(style, atts);
    if (!style.empty()) svg.Attribute("style", style);
    AddWords(svg, run.first, run.last, 0, scale);
    svg.End();
}

} // namespace

void AddTextLine(XmlWriter& svg, const TextLineObject& line, SvgPaint& paint)
{
    for (const TextRun& run : SplitIntoRuns(line)) {
        if (!Budget::Spend(Costs::c_svgRun)) return;
        if (IsSeen(run.first, run.last)) AddRun(svg, line, run, paint);
    }
}

} // namespace Host
