// The text part of a graphics state.

#include "content/GraphicsState.h"

#include "document/Limits.h"
#include "fonts/CodeSequence.h"
#include "fonts/Font.h"
#include "text/TextHandler.h"

#include <Quillet/Budget.h>
#include <Quillet/Page.h>
#include <Quillet/PdfDocument.h>

#include <Kernel/CharTraits.h>
#include <Renderer/FillDescriptor.h>
#include <Renderer/LineStyle.h>
#include <Renderer/LineStyleDescriptor.h>
#include <Story/GlyphAtts.h>

#include <cmath>
#include <utility>

namespace Quillet {

using namespace Story::GlyphAtt;

namespace {

constexpr char32_t c_noBreakSpace = 0x00A0;
constexpr char32_t c_symbolSpace = 0xF020;

} // namespace

void GraphicsState::SetFont(Kernel::Counted<const Quillet::Font> newFont, double size)
{
    if (newFont == font && fontSize * fontSign == size) return;
    OnGraphicsStateChanging();
    font = std::move(newFont);
    fontSize = std::abs(size);
    fontSign = size < 0 ? -1 : 1;
}

void GraphicsState::SetAdvance(double distance)
{
    if (advance == distance) return;
    advance = distance;
    if (!glyphAtts) return;
    Kernel::Counted<Story::GlyphAtts> changed = glyphAtts->Clone();
    AddAdvanceTo(*changed);
    glyphAtts = Kernel::ConsolidateObjectSacrifice(std::move(changed));
}

void GraphicsState::AddAdvanceTo(Story::GlyphAtts& atts) const
{
    atts.Set(BaselineShift, -(textRise * textTransform.y - advance));
}

Kernel::Consolidated<Story::GlyphAtts> GraphicsState::MakeGlyphAtts(const Params& lineTransform) const
{
    Budget::Spend(Limits::c_objectUnits);
    Kernel::Counted<Story::GlyphAtts> atts = Story::GlyphAtts::GetDefault()->Clone();
    if (page && page->ref.document) atts->Set(Language, page->ref.document->languageId);
    if (font) font->AddTo(*atts);
    atts->Set(Size, fontSize * textTransform.y * (font ? font->GetSizeScale() : 1));
    atts->Set(Kerning, 0);
    atts->Set(HorizontalScale, fontSign * (textTransform.x * textWidth) / (textTransform.y * 100));
    atts->Set(Shear, -textTransform.shear);

    const Params userToLine = lineTransform.GetInverse() * ltCurrent;
    const bool isFilled = (renderFlags & 2) != 0 && !fillDescriptor->IsEmpty();
    atts->Set(Fill, isFilled
                        ? MakeFillDescriptorWithAlpha(false, FillRequiresOpacity(false) ? 1 : fillAlpha, userToLine)
                        : Renderer::FillDescriptor::CreateNone());
    const bool isStroked = (renderFlags & 1) != 0 && !strokeDescriptor->IsEmpty() && lineStyle->width > 0;
    if (isStroked) {
        atts->Set(StrokeFill,
                  MakeFillDescriptorWithAlpha(true, FillRequiresOpacity(true) ? 1 : strokeAlpha, userToLine));
        atts->Set(Story::GlyphAtt::LineStyle, MakeLineStyleDescriptor(userToLine));
    } else {
        atts->Set(StrokeFill, Renderer::FillDescriptor::CreateNone());
        atts->Set(Story::GlyphAtt::LineStyle, Renderer::LineStyleDescriptor::CreateNone());
    }
    AddAdvanceTo(*atts);
    return Kernel::ConsolidateObjectSacrifice(std::move(atts));
}

double GraphicsState::AddChars(std::vector<Char>& chars, const CodeSequence& sequence, int code, double width) const
{
    CodeSequence points;
    for (std::size_t i = 0; i < sequence.count; ++i) {
        const char32_t unit = sequence.values[i];
        const bool isPair = (unit & 0xFC00) == 0xD800 && i + 1 < sequence.count;
        points.Add(isPair ? Kernel::CharTraits::MakeCodePoint(unit, sequence.values[++i]) : unit);
    }
    if (points.count == 1) return AddChar(chars, points.values[0], code, -1, width);
    if (points.count == 0) return width != 0 ? AddChar(chars, U' ', -1, code, width) : 0;

    // The glyph of a ligature has no widths for its letters: the font's own letters tell how to share it.
    const auto& metrics = glyphAtts->GetFontMetrics();
    std::array<double, CodeSequence::c_capacity> parts{};
    double sum = 0;
    for (std::size_t i = 0; i < points.count; ++i)
        sum += parts[i] = metrics->GetGlyphMetrics(points.values[i]).advance * glyphAtts->GetSize();
    double result = 0;
    for (std::size_t i = 0; i < points.count; ++i) {
        const double part = sum == 0 ? width / points.count : parts[i] * width / sum;
        result += AddChar(chars, points.values[i], -1, i == 0 ? code : -1, part, i + 1 == points.count);
    }
    return result;
}

double GraphicsState::AddChar(std::vector<Char>& chars, char32_t unicode, int glyphIndex, int charCode, double width,
                              bool isEndOfCode) const
{
    if (unicode == 0xFFFD || unicode == 0xFFFF) unicode = 0;
    if (glyphIndex <= 0 && unicode == 0) {
        if (width == 0) return 0;
        unicode = U' ';
    }
    if (!Budget::Spend(Limits::c_charUnits)) return 0;
    Char c;
    c.isSpace = unicode == U' ' || unicode == c_symbolSpace || unicode == c_noBreakSpace;
    double thousandths = width * fontSize;
    if (isEndOfCode) thousandths += charSpace * 1000;
    if (c.isSpace) thousandths += wordSpace * 1000;
    c.width = thousandths * GetAdvancePercent() / 100000;
    // A tab in a font is a glyph like any other; as a character it would mean something else from here on.
    if (unicode == U'\t') {
        unicode = U' ';
        c.isSpace = true;
    }
    c.unicode = unicode;
    c.glyphIndex = glyphIndex;
    c.charCode = charCode;
    c.atts = glyphAtts;
    if (font) {
        c.isSpaceDefined = font->isSpaceDefined;
        c.spaceCode = font->spaceCode;
        c.isFontAvailable = font->IsAvailable();
    }
    const double result = c.width;
    chars.push_back(std::move(c));
    return result;
}

} // namespace Quillet
