#include "fonts/TextState.h"

#include "document/Limits.h"
#include "fonts/CodeSequence.h"
#include "fonts/Font.h"

#include <Quillet/Budget.h>

#include <Kernel/CharTraits.h>
#include <Renderer/FontMetrics.h>

#include <array>
#include <cstddef>
#include <utility>

namespace Quillet {

using namespace Story::GlyphAtt;

namespace {

constexpr char32_t c_noBreakSpace = 0x00A0;
constexpr char32_t c_symbolSpace = 0xF020;

} // namespace

TextState::TextState() = default;
TextState::TextState(const TextState& other) = default;
TextState::TextState(TextState&& other) noexcept = default;
TextState::~TextState() = default;

void TextState::SetAdvance(double distance)
{
    if (advance == distance) return;
    advance = distance;
    if (!glyphAtts) return;
    Kernel::Counted<Story::GlyphAtts> changed = glyphAtts->Clone();
    AddAdvanceTo(*changed);
    glyphAtts = Kernel::ConsolidateObjectSacrifice(std::move(changed));
}

void TextState::AddAdvanceTo(Story::GlyphAtts& atts) const
{
    atts.Set(BaselineShift, -(textRise * textTransform.y - advance));
}

double TextState::AddChars(std::vector<Char>& chars, const CodeSequence& sequence, int code, double width) const
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

double TextState::AddChar(std::vector<Char>& chars, char32_t unicode, int glyphIndex, int charCode, double width,
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
