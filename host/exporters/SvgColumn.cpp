#include "exporters/SvgColumn.h"

#include "exporters/Costs.h"
#include "exporters/PathData.h"
#include "exporters/SvgElement.h"
#include "exporters/SvgPaint.h"
#include "exporters/SvgWords.h"
#include "exporters/TextRuns.h"
#include "exporters/XmlWriter.h"

#include <Quillet/Budget.h>
#include <Quillet/ColumnObject.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace Host {

using namespace Quillet;
using Params = Raster::AffineTransform::Params;
using Chars = TextLineObject::Chars;
using Atts = Kernel::Consolidated<Story::GlyphAtts>;

namespace {

/// Characters of a line that look alike, as the page shows them.
struct Span
{
    Chars::const_iterator first;
    Chars::const_iterator last;
    Atts atts;
    /// The pen at the first one, in the column's space.
    double x;
};

bool HasDropCap(const TextLineObject& line)
{
    if (!line.isParagraphFront || !line.paragraphAtts) return false;
    const auto& cap = line.paragraphAtts->GetDropCap();
    return cap && cap->isEnabled;
}

/// The letter of a drop cap has the look of its text; what makes it large is in the paragraph.
void EnlargeDropCap(std::vector<Span>& spans, const TextLineObject& line)
{
    const auto end = line.GetDropCapEnd();
    std::vector<Span> result;
    for (const Span& span : spans) {
        const auto split = std::clamp(end, span.first, span.last);
        if (split != span.first) {
            const auto atts = MakeDropCapAtts(*line.paragraphAtts, *span.atts, (end - 1)->unicode);
            result.push_back({span.first, split, Kernel::ConsolidateObjectSacrifice(atts), span.x});
        }
        if (split != span.last)
            result.push_back({split, span.last, span.atts, span.x + line.GetWidth(span.first, split)});
    }
    spans = std::move(result);
}

std::vector<Span> MakeSpans(const TextLineObject& line)
{
    std::vector<Span> spans;
    for (const TextRun& run : SplitIntoRuns(line)) {
        if (!Budget::Spend(Costs::c_svgRun)) break;
        spans.push_back({run.first, run.last, run.first->atts, line.position.x + run.start});
    }
    if (HasDropCap(line)) EnlargeDropCap(spans, line);
    return spans;
}

class ColumnWriter
{
public:
    ColumnWriter(XmlWriter& out, const ColumnObject& object, SvgPaint& usedPaint)
        : svg(out), column(object), paint(usedPaint), frame(object.GetBaseStoryFrameBox())
    {}

    void Write()
    {
        std::vector<std::vector<Span>> lines;
        for (const auto& line : column.lines) {
            if (Budget::IsSpent()) return;
            lines.push_back(MakeSpans(*line));
            for (const Span& span : lines.back())
                AddHighlight(*line, span);
        }
        for (std::size_t i = 0; i < lines.size() && !Budget::IsSpent(); ++i)
            AddLine(*column.lines[i], lines[i]);
        EndText();
    }

private:
    void AddHighlight(const TextLineObject& line, const Span& span)
    {
        const auto& fill = span.atts->GetFill(Story::GlyphAtt::HighlightFill);
        if (fill->IsEmpty()) return;
        const double baseline = line.GetGdiPosition().y + span.atts->Get(Story::GlyphAtt::BaselineShift);
        const double ascent = span.atts->GetAscent();
        svg.Begin("rect");
        svg.Attribute("x", span.x);
        svg.Attribute("y", baseline - ascent);
        svg.Attribute("width", std::max(0.0, line.GetWidth(span.first, span.last)));
        svg.Attribute("height", std::max(0.0, ascent + span.atts->GetDescent()));
        if (!column.transform.IsIdentity(0)) SetTransform(svg, column.transform);
        paint.SetFill(svg, *fill);
        if (column.clipPath) paint.SetClip(svg, *column.clipPath, column.clipWinding, column.transform);
        AddLook();
        svg.End();
    }

    void AddLine(const TextLineObject& line, const std::vector<Span>& spans)
    {
        for (const Span& span : spans) {
            const double size = span.atts->GetSize();
            const double scale = span.atts->Get(Story::GlyphAtt::HorizontalScale);
            const bool isDrawn = size > 0 && std::isfinite(scale) && scale != 0;
            if (isDrawn && IsSeen(span.first, span.last)) AddSpan(line, span);
        }
        for (const TabPlace& tab : FindTabs(line, frame)) {
            if (tab.HasLeader()) AddLeader(line, tab);
        }
        EndLine();
    }

    void AddSpan(const TextLineObject& line, const Span& span)
    {
        const double baseline = line.GetGdiPosition().y + span.atts->Get(Story::GlyphAtt::BaselineShift);
        const auto pen = BeginSpan(span.atts, {span.x, baseline});
        std::string style;
        AddDecorations(style, *span.atts);
        const bool isOwn = BeginRun(span.atts, pen.y);
        AddWords(svg, span.first, span.last, pen.x, shape.a, style);
        if (isOwn) svg.End();
    }

    /// Dots stand at the end of the gap, as typesetters put them.
    void AddLeader(const TextLineObject& line, const TabPlace& tab)
    {
        const Atts& atts = tab.tab->atts;
        const double scale = atts->Get(Story::GlyphAtt::HorizontalScale);
        const double step = atts->GetFontMetrics()->GetGlyphMetrics(U'.').advance * atts->GetSize() * scale;
        if (!(step > 0) || !(tab.end - tab.start < 1e4 * step)) return;
        const double count = std::floor((tab.end - tab.start) / step);
        if (count < 1 || !Budget::Spend(Costs::c_svgChar * static_cast<unsigned long long>(count))) return;
        const double baseline = line.GetGdiPosition().y + atts->Get(Story::GlyphAtt::BaselineShift);
        const auto pen = BeginSpan(atts, {tab.end - count * step, baseline});
        const bool isOwn = BeginRun(atts, pen.y);
        svg.Begin("tspan");
        svg.Attribute("x", pen.x, 4);
        svg.Text(std::string(static_cast<std::size_t>(count), '.'));
        svg.End();
        if (isOwn) svg.End();
    }

    /// Sees to it that the element fits the glyphs, and gives a place of the column in it. An element has the look of
    /// its first run.
    Kernel::PointT<double> BeginSpan(const Atts& atts, Kernel::PointT<double> place)
    {
        const double size = atts->GetSize();
        const Params wanted = atts->GetGlyphTransform({0, 0}) * Params::Scale(1 / size, 1 / size);
        if (!isInText || !wanted.IsEqual(shape, 1e-9)) {
            EndText();
            shape = wanted;
            inverse = shape.GetInverse();
            svg.Begin("text");
            isInText = true;
            const Params placement = column.transform * shape;
            if (!placement.IsIdentity(0)) SetTransform(svg, placement);
            svg.Attribute("xml:space", "preserve");
            if (column.clipPath)
                paint.SetClip(svg, *MakeMoved(*column.clipPath, inverse), column.clipWinding, placement);
            AddLook();
            textAtts = atts;
            SetPaint(*atts, false);
        }
        if (!isInLine) {
            penY = inverse.ApplyTo(place).y;
            svg.Begin("tspan");
            svg.Attribute("y", penY, 4);
            isInLine = true;
        }
        return inverse.ApplyTo(place);
    }

    /// Begins an element for a run that stands or looks otherwise than what is open; says whether it did.
    bool BeginRun(const Atts& atts, double y)
    {
        // What follows a raised run stays up there unless it says where it stands.
        const bool isPlain = atts == textAtts && std::abs(y - penY) < 1e-4;
        penY = y;
        if (isPlain) return false;
        svg.Begin("tspan");
        svg.Attribute("y", y, 4);
        if (!(atts == textAtts)) SetPaint(*atts, true);
        return true;
    }

    void EndLine()
    {
        if (std::exchange(isInLine, false)) svg.End();
    }

    void EndText()
    {
        EndLine();
        if (std::exchange(isInText, false)) svg.End();
    }

    void SetPaint(const Story::GlyphAtts& atts, bool isOverriding)
    {
        using namespace Story::GlyphAtt;
        SetFont(svg, atts, isOverriding);
        paint.SetFill(svg, *atts.GetFill(Story::GlyphAtt::Fill));
        if (Renderer::LineStyleDescriptor::IsLineStyleVisible(atts.GetLineStyle(), atts.GetFill(StrokeFill)))
            paint.SetStroke(svg, *atts.GetFill(StrokeFill), *atts.GetLineStyle(), GetScale(column.transform * shape));
        else if (isOverriding)
            svg.Attribute("stroke", "none");
    }

    void AddLook()
    {
        std::string style;
        AddBlendMode(style, column.GetBlendMode());
        if (!style.empty()) svg.Attribute("style", style);
    }

    XmlWriter& svg;
    const ColumnObject& column;
    SvgPaint& paint;
    const Kernel::RectT<double> frame;
    bool isInText = false;
    bool isInLine = false;
    /// From the element to the column.
    Params shape;
    Params inverse;
    /// The look that the element has.
    Atts textAtts;
    double penY = 0;
};

} // namespace

void AddColumn(XmlWriter& svg, const ColumnObject& column, SvgPaint& paint)
{
    ColumnWriter(svg, column, paint).Write();
}

} // namespace Host
