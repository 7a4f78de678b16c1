#include "exporters/SvgWords.h"

#include "exporters/Costs.h"
#include "exporters/SvgElement.h"
#include "exporters/TextRuns.h"
#include "exporters/XmlWriter.h"

#include <Quillet/Budget.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace Host {

using namespace Quillet;
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
    for (; !c->isSpace && c + 1 != end && !(c + 1)->isSpace && !(c + 1)->IsTab(); ++c) {
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

} // namespace

bool IsSeen(Chars::const_iterator first, Chars::const_iterator last)
{
    return std::any_of(first, last, [](const Char& c) { return !c.isSpace && !c.IsTab(); });
}

void AddWords(XmlWriter& svg, Chars::const_iterator first, Chars::const_iterator last, double pen, double scale,
              const std::string& style)
{
    while (first != last) {
        if (first->IsTab()) {
            pen += first->width / scale;
            ++first;
            continue;
        }
        const Piece piece = FindPiece(first, last, scale);
        if (!Budget::Spend(Costs::c_svgChar * static_cast<unsigned long long>(piece.last - first))) return;
        const std::string characters = MakeXmlText(GetRunText(first, piece.last));
        if (!characters.empty()) {
            svg.Begin("tspan");
            svg.Attribute("x", pen, 4);
            if (std::abs(piece.spacing) > 1e-3) svg.Attribute("letter-spacing", piece.spacing, 4);
            std::string ownStyle = style;
            // The characters are in the order of their places, and not of reading.
            if (std::any_of(first, piece.last, IsRightToLeft))
                AddStyle(ownStyle, "direction:ltr;unicode-bidi:bidi-override");
            if (!ownStyle.empty()) svg.Attribute("style", ownStyle);
            svg.Text(characters);
            svg.End();
        }
        for (; first != piece.last; ++first)
            pen += first->width / scale;
    }
}

void SetFont(XmlWriter& svg, const Story::GlyphAtts& atts, bool isOverriding)
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
    svg.Attribute("font-family", MakeXmlText(families));
    svg.Attribute("font-size", atts.GetSize(), 4);
    if (isOverriding || actual.weight != 400) svg.Attribute("font-weight", std::to_string(actual.weight));
    if (isOverriding || actual.isItalic) svg.Attribute("font-style", actual.isItalic ? "italic" : "normal");
}

void AddDecorations(std::string& style, const Story::GlyphAtts& atts)
{
    const bool isUnderlined = atts.Get(Story::GlyphAtt::Underline) != 0;
    const bool isStruckOut = atts.Get(Story::GlyphAtt::Strikeout) != 0;
    if (isUnderlined && isStruckOut)
        AddStyle(style, "text-decoration:underline line-through");
    else if (isUnderlined)
        AddStyle(style, "text-decoration:underline");
    else if (isStruckOut)
        AddStyle(style, "text-decoration:line-through");
}

} // namespace Host
