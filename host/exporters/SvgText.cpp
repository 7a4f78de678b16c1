#include "exporters/SvgText.h"

#include "exporters/Costs.h"
#include "exporters/PathData.h"
#include "exporters/SvgElement.h"
#include "exporters/SvgPaint.h"
#include "exporters/TextRuns.h"

#include <Quillet/Budget.h>
#include <Quillet/TextLineObject.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Host {

using namespace Quillet;
using Params = Raster::AffineTransform::Params;
using Chars = TextLineObject::Chars;

namespace {

/// Characters that one start and one letter spacing place.
struct Piece
{
    Chars::const_iterator last;
    double spacing;
};

/// What is drawn for it is a glyph of the font, so that its width is known.
bool IsMeasured(const Char& c)
{
    return c.GetGlyphMetrics().id != 0 && c.unicode != 0;
}

/// A word, as far as its letters can be spaced evenly so that each lies near its place on the page, whatever the
/// widths of the font that is used. The space goes with the word before it: text copied from the picture has it.
Piece FindPiece(Chars::const_iterator first, Chars::const_iterator end, double scale)
{
    // In ems: what the eye forgives within a word.
    constexpr double c_tolerance = 0.05;
    const double size = first->GetSize();
    const Renderer::FontMetrics& metrics = *first->atts->GetFontMetrics();
    double lowest = -std::numeric_limits<double>::infinity();
    double highest = std::numeric_limits<double>::infinity();
    double deviation = 0;
    double count = 0;
    auto c = first;
    for (; !c->isSpace && c + 1 != end && !(c + 1)->isSpace; ++c) {
        const Char& next = *(c + 1);
        if (!IsMeasured(*c) || !IsMeasured(next) || !IsXmlCharacter(next.unicode)) break;
        const Renderer::GlyphMetrics glyph = c->GetGlyphMetrics();
        const double kerning = metrics.GetAutoKerning(glyph.id, next.GetGlyphMetrics().id);
        const double nextDeviation = deviation + c->width / scale - (glyph.advance + kerning) * size;
        const double least = std::max(lowest, (nextDeviation - c_tolerance * size) / (count + 1));
        const double most = std::min(highest, (nextDeviation + c_tolerance * size) / (count + 1));
        if (!(least <= most)) break;
        lowest = least;
        highest = most;
        deviation = nextDeviation;
        ++count;
    }
    auto last = c + 1;
    if (!c->isSpace && last != end && last->isSpace) ++last;
    return {last, count > 0 ? std::clamp(deviation / count, lowest, highest) : 0};
}

/// Of a script that is written from right to left.
bool IsRightToLeft(const Char& c)
{
    return (c.unicode >= 0x0590 && c.unicode < 0x0900) || (c.unicode >= 0xFB1D && c.unicode < 0xFE00) ||
           (c.unicode >= 0xFE70 && c.unicode < 0xFF00) || (c.unicode >= 0x10800 && c.unicode < 0x11000);
}

void AddWords(pugi::xml_node text, const TextRun& run, double scale)
{
    double pen = 0;
    for (auto first = run.first; first != run.last;) {
        const Piece piece = FindPiece(first, run.last, scale);
        if (!Budget::Spend(Costs::c_svgChar * static_cast<unsigned long long>(piece.last - first))) return;
        const std::string characters = MakeXmlText(GetRunText(first, piece.last));
        if (!characters.empty()) {
            pugi::xml_node span = Append(text, "tspan");
            Set(span, "x", MakeNumber(pen, 4));
            if (std::abs(piece.spacing) > 1e-3) Set(span, "letter-spacing", MakeNumber(piece.spacing, 4));
            // The characters are in the order of their places, and not of reading.
            if (std::any_of(first, piece.last, IsRightToLeft))
                Set(span, "style", "direction:ltr;unicode-bidi:bidi-override");
            span.text().set(characters.c_str());
        }
        for (; first != piece.last; ++first)
            pen += first->width / scale;
    }
}

void SetFont(pugi::xml_node node, const Story::GlyphAtts& atts)
{
    const Kernel::Font& desired = atts.GetDesiredFont();
    const Kernel::Font& actual = atts.GetFontMetrics()->GetActualFont();
    std::string families;
    const auto add = [&families](const std::string& name) {
        if (name.empty()) return;
        std::string clean;
        for (const char c : name) {
            if (c != '\'' && c != '"' && c != '\\' && c != ';') clean += c;
        }
        families += (families.empty() ? "'" : ", '") + clean + "'";
    };
    add(actual.family);
    if (desired.family != actual.family) add(desired.family.empty() ? desired.postscriptName : desired.family);
    Set(node, "font-family", MakeXmlText(families));
    Set(node, "font-size", MakeNumber(atts.GetSize(), 4));
    if (actual.weight != 400) Set(node, "font-weight", std::to_string(actual.weight));
    if (actual.isItalic) Set(node, "font-style", "italic");
}

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
    SetFont(text, atts);
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
    if (atts.Get(Underline) != 0) AddStyle(style, "text-decoration:underline");
    if (!style.empty()) Set(text, "style", style);
    AddWords(text, run, scale);
}

} // namespace

void AddTextLine(pugi::xml_node parent, const TextLineObject& line, SvgPaint& paint)
{
    for (const TextRun& run : SplitIntoRuns(line)) {
        if (!Budget::Spend(Costs::c_svgRun)) return;
        const auto isSeen = [](const Char& c) { return !c.isSpace && !c.IsTab(); };
        if (std::any_of(run.first, run.last, isSeen)) AddRun(parent, line, run, paint);
    }
}

} // namespace Host
