#include <Quillet/TextLineObject.h>

#include "document/Limits.h"
#include "fonts/Font.h"
#include "fonts/TextState.h"
#include "objects/SoftMask.h"
#include "text/ForAtts.h"
#include "text/ListAtt.h"

#include <Quillet/Budget.h>

#include <Geometry/BoundingBoxT.h>
#include <Kernel/CharTraits.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Quillet {

using namespace Story::GlyphAtt;

namespace {

constexpr double c_transformTolerance = 1e-6;
/// Of a size: how far text goes on behind a gap, and how far its baseline may leave the line's.
constexpr double c_maxGap = 1.8;
constexpr double c_maxDrop = 0.5;
constexpr double c_maxRise = -3.0 * 0.25;
constexpr double c_maxSizeRatio = 3;
/// Points that make no other baseline, and no other size.
constexpr double c_sameBaseline = 1;
constexpr double c_sameSize = 1;
constexpr double c_absorbedWidth = -1e-5;
constexpr double c_noise = 1e-9;
/// In points, and of a size: type of two points has spaces too.
constexpr double c_thinSpace = 1;
constexpr double c_thinSpaceOfSize = 1.0 / 8;

} // namespace

TextLineObject::TextLineObject(int newId) : Object(Kind::TextLine)
{
    id = newId;
    TextLineObject::Clear();
}

TextLineObject::TextLineObject(const TextLineObject& source, int newId, Chars::const_iterator first,
                               Chars::const_iterator last)
    : Object(source), fidelity(source.fidelity)
{
    id = newId;
    SetSoftMask(source.softMask);
    chars.assign(first, last);
    position = {source.position.x + source.GetWidth(source.chars.begin(), first), source.position.y};
    width = GetWidth(chars.begin(), chars.end());
    textHeight = GetTextHeight(chars.begin(), chars.end());
    blendMode = source.blendMode;
    TextLineObject::UpdateBBox();
}

TextLineObject::~TextLineObject() = default;

void TextLineObject::Clear()
{
    chars.clear();
    width = 0;
    wordSpace = 1;
    textHeight = 0;
    listStyleCharCount = 0;
    blendMode = {};
    needsLineBreak = isParagraphFront = isParagraphBack = false;
    listCandidate = nullptr;
}

double TextLineObject::GetWidth(Chars::const_iterator first, Chars::const_iterator last) const
{
    double sum = 0;
    for (; first != last; ++first)
        sum += first->width;
    return sum;
}

double TextLineObject::GetTextHeight(Chars::const_iterator first, Chars::const_iterator last) const
{
    double height = 0;
    const Story::GlyphAtts* known = nullptr;
    for (; first != last; ++first) {
        if (first->atts.Get() != known) height = std::max(height, first->GetSize());
        known = first->atts.Get();
    }
    return height;
}

TextLineObject::Point TextLineObject::GetEndPosition(const TextState& state) const
{
    return {position.x + width, position.y - state.advance};
}

bool TextLineObject::HasUndefinedSpace() const
{
    return std::ranges::any_of(chars, [](const Char& c) { return c.isSpace && !c.isSpaceDefined; });
}

bool TextLineObject::CanMoveToX(double x) const
{
    const double end = position.x + width;
    return !(x < end - GetMaxKern(chars.back())) && !(x > end + textHeight * c_maxGap);
}

bool TextLineObject::CanMoveToY(double y, const Atts& atts) const
{
    const double drop = position.y - y;
    if (std::abs(drop) <= c_sameBaseline) return true;
    const double size = atts->GetSize();
    const double largest = std::max(textHeight, size);
    if (std::abs(textHeight - size) <= c_sameSize) return false;
    if (drop > largest * c_maxDrop || drop <= largest * c_maxRise) return false;
    return !(size > textHeight * c_maxSizeRatio);
}

bool TextLineObject::CanMoveTo(const Point& point, const Atts& atts) const
{
    return chars.empty() || (CanMoveToX(point.x) && CanMoveToY(point.y, atts));
}

void TextLineObject::MoveTo(const Point& point, TextState& state)
{
    if (chars.empty()) {
        position = point;
        state.SetAdvance(0);
        return;
    }
    state.SetAdvance(position.y - point.y);
    // A pen that was worked back from the line's end returns with noise, which is no gap.
    const double gap = point.x - (position.x + width);
    if (!(std::abs(gap) <= c_noise)) AddSpaceAtEnd(gap);
}

void TextLineObject::Kern(double amount)
{
    if (chars.empty()) {
        position.x -= amount;
    } else {
        AddSpaceAtEnd(-amount);
    }
}

std::optional<Char> TextLineObject::AddSpace(Char& c, double amount, Char* next)
{
    if (amount == 0) return std::nullopt;
    width += amount;
    c.isKerned = amount > 0;
    if (c.isSpace) {
        c.width += amount;
        return std::nullopt;
    }
    if (next && next->isSpace) {
        next->width += amount;
        return std::nullopt;
    }
    if (amount < GetMaxKern(c)) {
        c.width += amount;
        if (c.width >= c_absorbedWidth && c.width < 0) {
            width -= c.width;
            c.width = 0;
        }
        return std::nullopt;
    }
    // To look the same, text of a font without a space glyph keeps its gaps as width; to be edited, it needs spaces.
    if (!c.isSpaceDefined && fidelity == TextFidelityExact) {
        c.width += amount;
        return std::nullopt;
    }
    Char space = c;
    space.isSpace = true;
    space.width = amount;
    space.glyphIndex = c.isSpaceDefined ? c.spaceCode : -1;
    space.unicode = space.glyphIndex == -1 ? U' ' : 0;
    space.atts = GetSpaceAtts(c);
    return space;
}

void TextLineObject::AddSpaceAtEnd(double amount)
{
    if (auto space = AddSpace(chars.back(), amount, nullptr)) chars.push_back(std::move(*space));
}

TextLineObject::Atts TextLineObject::GetSpaceAtts(const Char& c) const
{
    const Story::GlyphAtts& atts = *c.atts;
    if (atts.Get(Underline) == 0 && atts.Get(Strikeout) == 0 && atts.GetFill(HighlightFill)->IsEmpty()) return c.atts;
    Kernel::Counted<Story::GlyphAtts> plain = atts.Clone();
    plain->Set(Underline, 0);
    plain->Set(Strikeout, 0);
    for (const Story::GlyphAtt::Object fill : {UnderlineFill, StrikeoutFill, HighlightFill})
        plain->Set(fill, Renderer::FillDescriptor::CreateNone());
    return Kernel::ConsolidateObjectSacrifice(std::move(plain));
}

bool TextLineObject::IsThinSpace(const Char& c)
{
    return c.isSpace && c.width < c_thinSpace && c.width < c.GetSize() * c_thinSpaceOfSize;
}

void TextLineObject::RemoveThinSpace(std::size_t index)
{
    if (index == 0 || !IsThinSpace(chars[index])) return;
    chars[index - 1].width += chars[index].width;
    chars.erase(chars.begin() + static_cast<std::ptrdiff_t>(index));
}

void TextLineObject::TextOut(const std::vector<char>& string, TextState& state)
{
    width += state.font->TextOut(chars, string, state);
    textHeight = std::max(textHeight, state.glyphAtts->GetSize());
}

TextLineObject::Rect TextLineObject::GetGdiTextBox() const
{
    return {position.x, -position.y, position.x + width, -position.y};
}

void TextLineObject::MoveShearToGlyphs()
{
    const bool isSlant =
        std::abs(transform.c) > c_transformTolerance && std::abs(transform.b) <= c_transformTolerance &&
        std::abs(transform.a - 1) <= c_transformTolerance && std::abs(transform.d - 1) <= c_transformTolerance;
    if (!isSlant) return;
    const double slant = transform.c;
    ForAtts(chars.begin(), chars.end(), [slant](Story::GlyphAtts& atts) { atts.Set(Shear, atts.Get(Shear) + slant); });
    const Point moved = transform.ApplyTo(GetGdiPosition());
    position = {moved.x, -moved.y};
    if (clipPath) {
        const auto moving = clipPath->Clone();
        moving->Transform(transform);
        clipPath = moving;
    }
    SetTransform(Params());
    UpdateBBox();
}

TextLineObject::Rect TextLineObject::GetBoxOf(Chars::const_iterator first, Chars::const_iterator last, double pen) const
{
    Rect box = Rect::MakeEmpty();
    for (; first != last; ++first) {
        const Char& c = *first;
        const Story::GlyphAtts& atts = *c.atts;
        const Rect glyph = c.GetGlyphMetrics().box;
        const double size = atts.GetSize();
        const double baseline = atts.Get(BaselineShift);
        if (!glyph.IsEmpty()) {
            const double across = size * atts.Get(HorizontalScale);
            box = box.Union(Rect::FromCorners({pen + glyph.left * across, baseline + glyph.top * size},
                                              {pen + glyph.right * across, baseline + glyph.bottom * size}));
        }
        if (atts.Get(Underline) != 0) {
            const Renderer::FontMetrics& metrics = *atts.GetFontMetrics();
            const double below = size * (metrics.GetUnderlinePosition() + metrics.GetUnderlineThickness());
            box = box.Union(Rect::FromCorners({pen, baseline}, {pen + c.width, below}));
        }
        pen += c.width;
    }
    if (box.IsEmpty()) return box;
    return {box.left + position.x, box.top - position.y, box.right + position.x, box.bottom - position.y};
}

void TextLineObject::UpdateBBox()
{
    SetBBox(GetBoxOf(chars.begin(), chars.end(), 0));
}

void TextLineObject::AppendOutlinesTo(Geometry::PolyCurveDbl& target) const
{
    Point pen = GetGdiPosition();
    for (const Char& c : chars) {
        const int glyph = c.GetGlyphMetrics().id;
        if (const auto outline = c.isSpace ? nullptr : c.atts->GetFontMetrics()->GetOutline(glyph)) {
            const double baseline = pen.y + c.atts->Get(BaselineShift);
            unsigned long long nodeCount = 0;
            for (const auto& curve : *outline)
                nodeCount += curve->nodes.size();
            if (!Budget::Spend(Limits::c_segmentUnits * nodeCount)) return;
            const auto placed = outline->Clone();
            placed->Transform(transform * c.atts->GetGlyphTransform({pen.x, baseline}));
            for (const auto& curve : *placed)
                target.AddCurve(curve);
        }
        pen.x += c.width;
    }
}

bool TextLineObject::HasFillOrStroke() const
{
    const Story::GlyphAtts* known = nullptr;
    return std::ranges::any_of(chars, [&known](const Char& c) {
        if (c.isSpace || c.IsTab() || c.atts.Get() == known) return false;
        known = c.atts.Get();
        const auto& stroke = known->GetFill(StrokeFill);
        return !known->GetFill(Fill)->IsEmpty() ||
               Renderer::LineStyleDescriptor::IsLineStyleVisible(known->GetLineStyle(), stroke);
    });
}

std::string TextLineObject::GetText() const
{
    std::string text;
    for (const Char& c : chars) {
        if (c.unicode != 0) {
            Kernel::CharTraits::AppendCodePoint(text, c.unicode);
        } else if (c.isSpace) {
            text += ' ';
        }
    }
    return text;
}

} // namespace Quillet
