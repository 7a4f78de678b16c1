#include "exporters/HtmlLook.h"

#include "exporters/Costs.h"
#include "exporters/NumberText.h"
#include "exporters/SvgElement.h"
#include "exporters/SvgPaint.h"

#include <Quillet/Budget.h>

#include <Renderer/Colour.h>

#include <algorithm>
#include <cmath>

namespace Host {

using Profiles = Raster::ICCManager::ICCProfileSet;

namespace {

/// What a browser falls back on.
const char* GetGenericFamily(const Kernel::Font& font)
{
    const auto has = [&font](std::string_view word) {
        return font.family.find(word) != std::string::npos || font.postscriptName.find(word) != std::string::npos;
    };
    if (font.panose.IsMonospaced() || has("Mono") || has("Courier")) return "monospace";
    if (font.panose.GetKind() == Kernel::Panose::LatinScript) return "cursive";
    if (has("Sans") || has("Arial") || has("Helvetica")) return "sans-serif";
    // The second digit of a Latin text face tells its serifs: from 11 on there are none.
    const int serif = font.panose.digits[1];
    if (font.panose.GetKind() == Kernel::Panose::LatinText && serif >= 2) return serif >= 11 ? "sans-serif" : "serif";
    for (const char* word : {"Serif", "Roman", "Times", "Garamond", "Georgia", "Palatino", "Bodoni", "Schoolbook"}) {
        if (has(word)) return "serif";
    }
    return "sans-serif";
}

std::string MakeFamilies(const Story::GlyphAtts& atts)
{
    const Kernel::Font& desired = atts.GetDesiredFont();
    const Kernel::Font& actual = atts.GetFontMetrics()->GetActualFont();
    std::string families;
    const auto add = [&families](const std::string& name) {
        std::string clean;
        for (const char c : name) {
            const bool isQuoted = c == '\'' || c == '"' || c == '\\' || static_cast<unsigned char>(c) < 0x20;
            if (!isQuoted) clean += c;
        }
        if (!clean.empty()) families += "'" + clean + "',";
    };
    add(actual.family);
    if (desired.family != actual.family) add(desired.family.empty() ? desired.postscriptName : desired.family);
    return families + GetGenericFamily(actual.family.empty() ? desired : actual);
}

std::string MakeColour(const Renderer::FillDescriptor& descriptor, const Profiles& profiles)
{
    const auto colour = descriptor.IsEmpty() ? nullptr : descriptor.fill->GetColour();
    if (!colour) return "transparent";
    std::string text = MakeColourCode(*colour, profiles);
    const auto alpha = static_cast<unsigned>(GetOpacity(*colour) * 255 + 0.5);
    if (alpha == 255) return text;
    text += "0123456789abcdef"[alpha >> 4];
    text += "0123456789abcdef"[alpha & 15];
    return text;
}

} // namespace

std::string MakePoints(double value)
{
    std::string text;
    AppendNumber(text, value, 3);
    return text == "0" ? text : text + "pt";
}

std::string MakeClip(const Geometry::PolyCurveDbl& path, Geometry::WindingOrderMode winding,
                     const Raster::AffineTransform::Params& toBox)
{
    // CSS counts paths in pixels, of which a point has so many.
    constexpr double c_pixel = 4.0 / 3.0;
    using Params = Raster::AffineTransform::Params;
    const auto moved = MakeMoved(path, Params::Scale(c_pixel, c_pixel) * toBox);
    const char* const start = winding == Geometry::WindingOrderMode::EvenOdd ? "path(evenodd,'" : "path('";
    return start + MakePathData(*moved, Params()) + "')";
}

std::string MakeHtmlText(std::string_view text)
{
    std::string result;
    for (const char c : MakeXmlText(text)) {
        switch (c) {
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '&':
            result += "&amp;";
            break;
        case '"':
            result += "&quot;";
            break;
        case '\r':
            result += "&#13;";
            break;
        default:
            result += c;
        }
    }
    return result;
}

std::string HtmlStyle::MakeText() const
{
    std::string text;
    for (const auto& [property, value] : declarations) {
        if (!text.empty()) text += ';';
        text.append(property).append(":").append(value);
    }
    return MakeHtmlText(text);
}

std::string HtmlStyle::MakeAttribute() const
{
    return IsEmpty() ? std::string() : " style=\"" + MakeText() + "\"";
}

HtmlLook::HtmlLook(const Story::GlyphAtts& atts, const Profiles& profiles, double scale)
{
    using namespace Story::GlyphAtt;
    const Kernel::Font& font = atts.GetFontMetrics()->GetActualFont();
    inherited.Set("font-family", MakeFamilies(atts));
    inherited.SetPoints("font-size", atts.GetSize());
    inherited.Set("font-weight", std::to_string(font.weight));
    const bool isSlanted = std::abs(atts.Get(Shear)) > 0.05;
    inherited.Set("font-style", font.isItalic ? "italic" : isSlanted ? "oblique" : "normal");
    inherited.Set("color", MakeColour(*atts.GetFill(Story::GlyphAtt::Fill), profiles));
    // Glyphs of one scale among others of another cannot be scaled alone: they are set wider, half an em being usual.
    const double ownScale = atts.Get(HorizontalScale) / scale;
    double spacing = atts.Get(LetterSpacing);
    if (std::isfinite(ownScale)) spacing += (ownScale - 1) / 2;
    inherited.Set("letter-spacing", std::abs(spacing) < 5e-4 ? "normal" : MakeNumber(spacing, 4) + "em");
    inherited.Set("font-kerning", atts.UsesAutoKerning() ? "auto" : "none");

    const bool isStroked =
        Renderer::LineStyleDescriptor::IsLineStyleVisible(atts.GetLineStyle(), atts.GetFill(StrokeFill));
    if (isStroked) {
        own.Set("-webkit-text-stroke", MakePoints(atts.GetLineStyle()->lineStyle->width) + " " +
                                           MakeColour(*atts.GetFill(StrokeFill), profiles));
    }
    std::string lines;
    if (atts.Get(Underline) != 0) lines = "underline";
    if (atts.Get(Strikeout) != 0) lines += lines.empty() ? "line-through" : " line-through";
    if (!lines.empty()) own.Set("text-decoration", lines);
    const Renderer::FillDescriptor& highlight = *atts.GetFill(HighlightFill);
    if (!highlight.IsEmpty()) own.Set("background-color", MakeColour(highlight, profiles));
    const double shift = atts.Get(BaselineShift);
    if (std::abs(shift) > 5e-4) {
        own.Set("position", "relative");
        own.SetPoints("top", shift);
    }
}

HtmlStyle HtmlLook::MakeDifference(const HtmlLook& base) const
{
    HtmlStyle difference;
    for (std::size_t i = 0; i < inherited.declarations.size(); ++i) {
        if (inherited.declarations[i] != base.inherited.declarations[i])
            difference.declarations.push_back(inherited.declarations[i]);
    }
    difference.declarations.insert(difference.declarations.end(), own.declarations.begin(), own.declarations.end());
    return difference;
}

HtmlStyle HtmlLook::MakeMarker(const HtmlLook& base) const
{
    HtmlStyle marker;
    for (std::size_t i = 0; i < inherited.declarations.size(); ++i) {
        const auto& [property, value] = inherited.declarations[i];
        if (value != base.inherited.declarations[i].second) marker.Set("--marker-" + property, value);
    }
    return marker;
}

} // namespace Host
