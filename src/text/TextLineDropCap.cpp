// The large letter at the start of a line. It is whatever stands up to and including the first letter or digit, so that
// an opening quote is part of it.

#include <Quillet/TextLineObject.h>

#include "text/ForAtts.h"

#include <Quillet/PdfDocument.h>

#include <Kernel/CharacterType.h>
#include <Kernel/LocalisedString.h>
#include <Story/DropCapAtt.h>

#include <algorithm>
#include <cmath>

namespace Quillet {

using namespace Story::GlyphAtt;

namespace {

/// Of the cap's size, and of how deep it stands: what text beside it stays below.
constexpr double c_maxTextRatio = 0.5;
constexpr double c_sameCap = 1e-6;
/// Of a line: caps are not drawn to the hair.
constexpr double c_lineTolerance = 0.1;
/// More lines than any page has.
constexpr double c_maxCapLines = 1000;

bool IsBlank(const Char& c)
{
    return c.isSpace || c.IsTab();
}

} // namespace

TextLineObject::Chars::const_iterator TextLineObject::GetDropCapEnd() const
{
    const auto letter =
        std::find_if(chars.begin(), chars.end(), [](const Char& c) { return Kernel::IsAlnum(c.unicode); });
    return letter == chars.end() ? letter : letter + 1;
}

bool TextLineObject::IsDropCap() const
{
    if (chars.empty() || fidelity == TextFidelityExact) return false;
    const double shift = chars.front().atts->Get(BaselineShift);
    const double size = chars.front().GetSize();
    if (!(shift > 0)) return false;
    const auto text = std::find_if_not(GetDropCapEnd(), chars.end(), IsBlank);
    if (text == chars.end()) return false;
    const bool isBeside =
        text->atts->Get(BaselineShift) < c_maxTextRatio * shift && text->GetSize() < c_maxTextRatio * size;
    return isBeside && std::all_of(chars.begin(), text, [&](const Char& c) {
               return IsBlank(c) || (std::abs(c.atts->Get(BaselineShift) - shift) <= c_sameCap &&
                                     std::abs(c.GetSize() - size) <= c_sameCap);
           });
}

double TextLineObject::GetDropCapLeft() const
{
    const auto end = GetDropCapEnd();
    const double left = position.x + GetWidth(chars.begin(), end);
    if (end == chars.begin()) return left;
    const auto last = end - 1;
    return left - std::max(last->width - GetStoryWidth(last), 0.0);
}

double TextLineObject::GetDropCapLeading() const
{
    return GetTextHeight(std::find_if_not(GetDropCapEnd(), chars.end(), IsBlank), chars.end());
}

int TextLineObject::GetDropCapLineCount() const
{
    double height = 0;
    const auto end = GetDropCapEnd();
    for (auto c = chars.begin(); c != end; ++c) {
        const Rect box = c->GetGlyphMetrics().box;
        if (!box.IsEmpty()) height = std::max(height, box.GetHeight() * c->GetSize());
    }
    const double count = std::ceil(height / GetDropCapLeading() - c_lineTolerance);
    return count >= 1 ? static_cast<int>(std::min(count, c_maxCapLines)) : 1;
}

Kernel::Counted<const Story::DropCapAtt> TextLineObject::RemoveDropCap(double distance, int lineCount)
{
    const auto capEnd = chars.begin() + (GetDropCapEnd() - chars.cbegin());
    const auto text = std::find_if_not(capEnd, chars.end(), IsBlank);
    if (capEnd != chars.begin()) {
        const double blank = GetWidth(capEnd, text);
        (capEnd - 1)->width += blank;
        distance += blank;
    }
    const auto first = chars.erase(capEnd, text);
    const bool hasText = first != chars.end();
    ForAtts(chars.begin(), first, [&](Story::GlyphAtts& atts) {
        atts.Set(BaselineShift, 0);
        if (hasText) atts.Set(Size, first->GetSize());
    });
    textHeight = GetTextHeight(chars.begin(), chars.end());

    const auto dropCap = Kernel::MakeCounted<Story::DropCapAtt>();
    dropCap->SetIsEnabled(true);
    dropCap->SetHeightInLines(lineCount);
    dropCap->SetDistanceToText(distance);
    if (!hasText) return dropCap;
    const Kernel::Counted<const Story::Delta> delta =
        Story::MakeLocalGlyphFormatting(chars.front().atts, first->atts, false);
    if (!delta->IsEmpty()) {
        const Kernel::NonCounted<PdfDocument> document = GetDocument();
        const Kernel::LocalisedString name("Drop Cap Character %1", "Import Style Name");
        dropCap->SetStyleName(document ? document->MakeStyleName(delta, name) : "", delta);
    }
    // The difference lives on in the style.
    for (auto c = chars.begin(); c != first; ++c)
        c->atts = first->atts;
    return dropCap;
}

} // namespace Quillet
