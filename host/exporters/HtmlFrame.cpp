#include "exporters/HtmlFrame.h"

#include "exporters/Costs.h"
#include "exporters/HtmlParagraph.h"
#include "exporters/LongText.h"
#include "exporters/PathData.h"
#include "exporters/SvgElement.h"
#include "exporters/SvgPaint.h"

#include <Quillet/Budget.h>
#include <Quillet/ColumnObject.h>

#include <algorithm>
#include <cmath>
#include <optional>

namespace Host {

using namespace Quillet;
using Params = Raster::AffineTransform::Params;
using Rect = Kernel::RectT<double>;

namespace {

/// The horizontal scale that all glyphs have: then the frame is scaled, and text flows in it as in any other. Else 1.
double FindScale(const ColumnText& text)
{
    std::optional<double> scale;
    for (const ColumnText::Paragraph& paragraph : text.GetParagraphs()) {
        for (const Story::Story::Run& run : *paragraph.runs) {
            const double own = run.atts->Get(Story::GlyphAtt::HorizontalScale);
            if (scale && std::abs(*scale - own) > 1e-3) return 1;
            scale = own;
        }
    }
    return scale && std::isfinite(*scale) && *scale > 1e-3 && *scale < 1e3 ? *scale : 1;
}

/// Where the text wraps as on the page. Text that is no frame has no room to spare; other text has some, but not as
/// much as a line would claim that is measured by one wide space: lines that wrap would end elsewhere.
Rect MakeFrame(const ColumnObject& column, const Rect& text, bool isArt)
{
    constexpr double c_mostRoom = 10.5;
    constexpr double c_room = 0.5;
    Rect frame = column.GetStoryFrameBox();
    if (isArt) return text;
    const bool wraps = std::ranges::any_of(column.lines, [](const auto& line) { return line->UsesWrap(); });
    if (!(frame.right - text.right <= c_mostRoom)) frame.right = text.right + (wraps ? c_room : c_mostRoom);
    if (!(text.left - frame.left <= c_mostRoom)) frame.left = text.left - (wraps ? 0 : c_mostRoom);
    return frame;
}

HtmlStyle MakePlace(const Object& object, Renderer::FillBlendMode::BlendMode mode, const Rect& frame, double scale)
{
    HtmlStyle style;
    const auto corner = object.transform.ApplyTo(Kernel::PointT<double>{frame.left, frame.top});
    style.SetPoints("left", corner.x);
    style.SetPoints("top", corner.y);
    style.SetPoints("width", std::max(0.0, frame.GetWidth() / scale));
    style.SetPoints("min-height", std::max(0.0, frame.GetHeight()));
    Params shape = object.transform * Params::Scale(scale, 1);
    shape.e = shape.f = 0;
    if (!shape.IsIdentity(1e-9)) {
        std::string matrix = "matrix(";
        for (const double value : {shape.a, shape.b, shape.c, shape.d})
            matrix += MakeNumber(value, 9) + ",";
        style.Set("transform", matrix + "0,0)");
    }
    if (object.clipPath) {
        const Params toBox = Params::Scale(1 / scale, 1) * Params::Translation(-frame.left, -frame.top);
        style.Set("clip-path", MakeClip(*object.clipPath, object.clipWinding, toBox));
    }
    if (mode != Renderer::FillBlendMode::Normal) style.Set("mix-blend-mode", MakeBlendName(mode));
    return style;
}

/// A text as CSS has it between quotation marks.
std::string Quote(const std::string& text)
{
    std::string quoted = "'";
    for (const char c : text) {
        if (c == '\'' || c == '\\') quoted += '\\';
        if (static_cast<unsigned char>(c) >= 0x20) quoted += c;
    }
    return quoted + "'";
}

struct FormatNames
{
    const char* type;
    const char* style;
};

FormatNames GetFormatNames(Story::NumberFormat format)
{
    switch (format) {
    case Story::NumberFormat::UpperRoman:
        return {"I", "upper-roman"};
    case Story::NumberFormat::LowerRoman:
        return {"i", "lower-roman"};
    case Story::NumberFormat::UpperLetter:
        return {"A", "upper-alpha"};
    case Story::NumberFormat::LowerLetter:
        return {"a", "lower-alpha"};
    case Story::NumberFormat::Decimal:
        break;
    }
    return {"1", "decimal"};
}

std::string MakeListStart(const ColumnText::Paragraph& item)
{
    const Story::ListAtt& list = *item.atts->GetList();
    HtmlStyle style;
    if (!item.IsNumbered()) {
        style.Set("--before", Quote(ReplaceSymbols(GetMarkerText(list, ""))));
        return "<ul" + style.MakeAttribute() + ">";
    }
    const std::string text = GetMarkerText(list, "\1");
    const auto number = text.find('\1');
    const FormatNames names = GetFormatNames(list.format);
    style.Set("--before", Quote(text.substr(0, number)));
    if (number != std::string::npos) style.Set("--after", Quote(text.substr(number + 1)));
    style.Set("--format", names.style);
    style.Set("counter-reset", "item " + std::to_string(item.marker.number - 1LL));
    return "<ol start=\"" + std::to_string(item.marker.number) + "\" type=\"" + names.type + "\"" +
           style.MakeAttribute() + ">";
}

std::string GetItemStart(const Story::ListAtt& list)
{
    switch (list.align) {
    case Story::AlignX::Centre:
        return "<li class=\"middle\"";
    case Story::AlignX::Right:
        return "<li class=\"right\"";
    default:
        return "<li";
    }
}

/// Whether an item goes on with the list of the one right before it.
bool GoesOn(const ColumnText::Paragraph& item, const ColumnText::Paragraph& previous)
{
    const Story::ListAtt& list = *item.atts->GetList();
    const Story::ListAtt& before = *previous.atts->GetList();
    return list.type == before.type && list.text == before.text && list.format == before.format &&
           (!item.IsNumbered() || item.marker.number == previous.marker.number + 1);
}

} // namespace

void AppendFrame(LongText& html, const ColumnObject& column, const Raster::ICCManager::ICCProfileSet& profiles)
{
    const ColumnText text(column);
    const auto& paragraphs = text.GetParagraphs();
    if (paragraphs.empty() || column.lines.empty() || !Budget::Spend(Costs::c_htmlBox)) return;
    const double scale = FindScale(text);
    const bool isArt = column.IsArtText();
    const Rect textBox = column.GetBaseStoryFrameBox();
    Rect frame = MakeFrame(column, textBox, isArt);
    const HtmlParagraph top(column, textBox, paragraphs.front(), profiles, scale);
    frame.top = column.lines.front()->GetGdiPosition().y - top.GetSpaceAbove();
    frame.bottom = std::max(frame.bottom, frame.top);
    html.Append(isArt ? "<div class=\"frame art\" contenteditable=\"true\""
                      : "<div class=\"frame\" contenteditable=\"true\"");
    html.Append(MakePlace(column, column.GetBlendMode(), frame, scale).MakeAttribute() + ">\n");

    const ColumnText::Paragraph* previous = nullptr;
    double spaceBelow = 0;
    const auto endList = [&] {
        if (previous && previous->IsItem()) html.Append(previous->IsNumbered() ? "</ol>\n" : "</ul>\n");
    };
    for (const ColumnText::Paragraph& paragraph : paragraphs) {
        if (!Budget::Spend(Costs::c_htmlBox + Costs::c_htmlRun)) break;
        const HtmlParagraph content(column, textBox, paragraph, profiles, scale);
        const bool isItem = paragraph.IsItem();
        const bool goesOn = isItem && previous && previous->IsItem() && GoesOn(paragraph, *previous);
        if (!goesOn) {
            endList();
            if (isItem) html.Append(MakeListStart(paragraph));
        }
        const HtmlStyle style = content.MakeStyle(previous ? content.GetMargin(spaceBelow) : 0);
        html.Append((isItem ? GetItemStart(*paragraph.atts->GetList()) : "<p") + style.MakeAttribute() + ">");
        html.Append(content.MakeContent());
        html.Append(isItem ? "</li>\n" : "</p>\n");
        previous = &paragraph;
        spaceBelow = content.GetSpaceBelow();
    }
    endList();
    html.Append("</div>\n");
}

void AppendFrame(LongText& html, const TextLineObject& line, const Raster::ICCManager::ICCProfileSet& profiles)
{
    const auto runs = SplitIntoRuns(line);
    if (runs.empty() || !Budget::Spend(Costs::c_htmlBox)) return;
    Rect frame = line.GetGdiTextBox();
    const Story::GlyphAtts& atts = *runs.front().first->atts;
    const HtmlLook base(atts, profiles, 1);
    const double leading = atts.GetSize() * 1.2;
    frame.top -= (leading + atts.GetAscent() - atts.GetDescent()) / 2;
    html.Append("<div class=\"frame art\" contenteditable=\"true\"");
    html.Append(MakePlace(line, line.blendMode, frame, 1).MakeAttribute() + "><p");
    HtmlStyle style = base.MakeBase();
    style.SetPoints("line-height", leading);
    html.Append(style.MakeAttribute() + ">");
    for (const TextRun& run : runs) {
        if (!Budget::Spend(Costs::c_htmlRun)) break;
        const HtmlStyle difference = HtmlLook(*run.first->atts, profiles, 1).MakeDifference(base);
        html.Append("<span" + difference.MakeAttribute() + ">" + MakeHtmlText(GetRunText(run.first, run.last)) +
                    "</span>");
    }
    html.Append("</p></div>\n");
}

} // namespace Host
