#include "content/TextHandler.h"

#include "content/GraphicsStateStack.h"
#include "document/Limits.h"
#include "fonts/Font.h"
#include "objects/SoftMask.h"

#include <Quillet/Budget.h>
#include <Quillet/Page.h>
#include <Quillet/PdfDocument.h>
#include <Quillet/TextLineObject.h>

#include <cmath>
#include <numbers>
#include <utility>

namespace Quillet {

namespace {

using Params = TextHandler::Params;

constexpr double c_sameTransform = 1e-6;

/// From y upward to y downward, and back.
constexpr Params c_reversal = Params::Scale(1, -1);

Params ReverseY(const Params& transform)
{
    return c_reversal * transform * c_reversal;
}

/// A matrix as a turn after scales and a slant.
struct Decomposition
{
    explicit Decomposition(const Params& matrix)
    {
        angle = std::atan2(matrix.b, matrix.a);
        // A mirrored matrix turns so that the vertical scale stays positive and the horizontal one has the sign.
        if (matrix.a * matrix.d < matrix.b * matrix.c) {
            angle -= std::numbers::pi;
            if (angle < -std::numbers::pi) angle += 2 * std::numbers::pi;
        }
        Params upright = matrix;
        if (std::abs(angle) > c_sameTransform) {
            const double cosine = std::cos(angle);
            const double sine = std::sin(angle);
            turn = Params::FromPdf(cosine, sine, -sine, cosine, 0, 0);
            upright = Params::FromPdf(cosine, -sine, sine, cosine, 0, 0) * matrix;
        }
        scales.x = upright.a;
        scales.y = upright.d;
        const double shear = std::abs(upright.d) > c_sameTransform ? upright.c / upright.d : 0;
        scales.shear = std::abs(shear) > c_sameTransform ? shear : 0;
        pen = {upright.e, upright.f};
    }

    double angle = 0;
    Params turn;
    TextTransform scales;
    /// In the space that is turned.
    Kernel::PointT<double> pen;
};

} // namespace

TextHandler::TextHandler(Kernel::NonCounted<GraphicsStateStack> runStack) : stack(runStack), line(MakeLine()) {}

TextHandler::~TextHandler() = default;

GraphicsState& TextHandler::GetState() const
{
    return stack->GetTop();
}

Kernel::Counted<TextLineObject> TextHandler::MakeLine() const
{
    auto newLine = Kernel::MakeCounted<TextLineObject>(-1);
    if (const auto document = stack && stack->page ? stack->page->ref.document : nullptr)
        newLine->fidelity = document->GetTextFidelity();
    return newLine;
}

void TextHandler::BeginText()
{
    SetLtText(Params{});
    SetLtTextLineStart();
}

void TextHandler::EndText()
{
    FlushText();
    FlushClipping();
}

void TextHandler::SetLtText(const Params& transform)
{
    ltText = transform;
    isLtTextSet = true;
    penOfTakenLine.reset();
}

Params TextHandler::GetGdiLtText() const
{
    return GetState().ltCurrent * GetLtText();
}

Params TextHandler::GetLtText() const
{
    if (isLtTextSet) return ltText;
    // The pen has moved: what puts the origin of text space where the line ends.
    const GraphicsState& state = GetState();
    const Kernel::PointT<double> end = line->GetEndPosition(state);
    const Params glyphs{textTransform.x, textTransform.shear * textTransform.y, end.x, 0, textTransform.y, end.y};
    return state.ltCurrent.GetInverse() * c_reversal * lineTransform * glyphs * glyphReversal;
}

void TextHandler::UpdateTextAtts()
{
    GraphicsState& state = GetState();
    if (!state.font) state.font = Font::GetDefaultFont();
    const bool isInLineSpace = IsPenInLineSpace();
    if (isInLineSpace && !isLtTextSet && glyphAtts && IsAsLineIs(state)) return;

    // Worked back from the pen, a matrix returns with noise, which would make other sizes and spaces of nothing.
    const Kernel::PointT<double> pen = isInLineSpace ? GetPen() : Decompose();
    if (isInLineSpace) UpdateGlyphAtts(textTransform);
    if (!line->CanMoveTo(pen, glyphAtts) || !IsAsLineIs(state)) FlushText();
    line->MoveTo(pen, state);
    line->SetBlendMode(state.blendMode);
    line->SetSoftMask(state.softMask);
    isLtTextSet = false;
    penOfTakenLine.reset();
}

bool TextHandler::IsPenInLineSpace() const
{
    const GraphicsState& state = GetState();
    return (!isLtTextSet || penOfTakenLine) && state.ltCurrent.IsEqual(lastCtm, c_sameTransform) &&
           state.font->IsMirrored() == isFontMirrored;
}

Kernel::PointT<double> TextHandler::GetPen() const
{
    return penOfTakenLine ? *penOfTakenLine : line->GetEndPosition(GetState());
}

Kernel::PointT<double> TextHandler::Decompose()
{
    const GraphicsState& state = GetState();
    const Params textToPage = c_reversal * state.ltCurrent * GetLtText();
    // Glyphs that their font turns upside down are upright under a mirrored matrix. Under any other it is their content
    // that puts them right.
    isFontMirrored = state.font->IsMirrored();
    glyphReversal = isFontMirrored && textToPage.GetDeterminant() < 0 ? c_reversal : Params();
    const Decomposition parts(textToPage * glyphReversal);
    lastCtm = state.ltCurrent;
    if (!parts.turn.IsEqual(lineTransform, c_sameTransform)) {
        FlushText();
        lineTransform = parts.turn;
    }
    UpdateGlyphAtts(parts.scales);
    return parts.pen;
}

bool TextHandler::IsAsLineIs(const GraphicsState& state) const
{
    if (state.blendMode != line->blendMode) return false;
    const SoftMask* const mask = state.softMask.Get();
    const SoftMask* const lineMask = line->softMask.Get();
    return mask == lineMask || (mask && lineMask && *mask == *lineMask);
}

void TextHandler::UpdateGlyphAtts(const TextTransform& transform)
{
    if (glyphAtts && transform == textTransform) return;
    textTransform = transform;
    GraphicsState& state = GetState();
    state.SetTextTransform(transform);
    glyphAtts = state.MakeGlyphAtts(ReverseY(lineTransform));
    state.SetGlyphAtts(glyphAtts);
}

void TextHandler::TextOut(const std::vector<char>& string)
{
    if (!Budget::Spend(Limits::c_paintUnits)) return;
    UpdateTextAtts();
    line->TextOut(string, GetState());
}

void TextHandler::TextKern(double thousandths)
{
    if (!Budget::Spend(Limits::c_operatorUnits)) return;
    UpdateTextAtts();
    const GraphicsState& state = GetState();
    line->Kern(thousandths * state.fontSize * state.GetAdvancePercent() / 100000);
}

void TextHandler::FlushText()
{
    if (line->chars.empty()) return;
    // The pen stays where it is when its line goes.
    const Kernel::PointT<double> pen = GetPen();
    const bool isPenThere = !isLtTextSet;
    SetLtText(GetLtText());
    if (isPenThere) penOfTakenLine = pen;
    GraphicsState& state = GetState();
    line->SetTransform(ReverseY(lineTransform));
    line->OnEndOfLine();
    if (line->chars.empty()) {
        line->Clear();
        return;
    }
    if (state.isTextClip) line->AppendOutlinesTo(clipOutline);
    if (!state.isTextClip || line->HasFillOrStroke()) {
        line->SetId(stack->page->MakeObjectId());
        state.AddObject(line);
    }
    line = MakeLine();
}

void TextHandler::FlushClipping()
{
    if (clipOutline.IsEmpty()) return;
    GetState().PushClippingPath(clipOutline, Geometry::WindingOrderMode::NonZero, Params());
    clipOutline.curves.clear();
}

} // namespace Quillet
