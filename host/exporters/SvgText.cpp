#include "exporters/SvgText.h"

#include "exporters/Costs.h"
#include "exporters/PathData.h"
#include "exporters/SvgElement.h"
#include "exporters/SvgPaint.h"
#include "exporters/SvgWords.h"
#include "exporters/TextRuns.h"

#include <Quillet/Budget.h>
#include <Quillet/TextLineObject.h>

#include <algorithm>
#include <cmath>

namespace Host {

using namespace Quillet;
using Params = Raster::AffineTransform::Params;

namespace {

/// A text element for each run: only an element can be scaled and slanted.
void AddRun(pugi::xml_node parent, const TextLineObject& line, const TextRun& run, SvgPaint& paint)
{
    using namespace Story::GlyphAtt;
    const Story::GlyphAtts& atts = *run.first->atts;
    const double size = atts.GetSize();
    const double scale = atts.Get(HorizontalScale);
    if (!(size > 0) || !std::isfinite(scale) || scale == 0) return;

    pugi::xml_node text = Append(parent, "text");
    const auto position = line.GetGdiPosition();
    // Em space to the page, with the size left to the font.
    Params placement = atts.GetGlyphTransform({position.x + run.start, position.y + atts.Get(BaselineShift)});
    placement = line.transform * placement * Params::Scale(1 / size, 1 / size);
    Set(text, "transform", MakeTransform(placement));
    Set(text, "xml:space", "preserve");
    SetFont(text, atts, false);
    paint.SetFill(text, *atts.GetFill(Story::GlyphAtt::Fill));
    if (Renderer::LineStyleDescriptor::IsLineStyleVisible(atts.GetLineStyle(), atts.GetFill(StrokeFill))) {
        paint.SetStroke(text, *atts.GetFill(StrokeFill), *atts.GetLineStyle(), GetScale(placement));
    }
    if (line.clipPath) {
        const auto clip = MakeMoved(*line.clipPath, placement.GetInverse() * line.transform);
        paint.SetClip(text, *clip, line.clipWinding, placement);
    }
    std::string style;
    AddBlendMode(style, line.blendMode);
    AddDecorations(style, atts);
    if (!style.empty()) Set(text, "style", style);
    AddWords(text, run.first, run.last, 0, scale);
}

} // namespace

void AddTextLine(pugi::xml_node parent, const TextLineObject& line, SvgPaint& paint)
{
    for (const TextRun& run : SplitIntoRuns(line)) {
        if (!Budget::Spend(Costs::c_svgRun)) return;
        if (IsSeen(run.first, run.last)) AddRun(parent, line, run, paint);
    }
}

} // namespace Host
