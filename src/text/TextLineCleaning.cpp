// What turns the strings of a line, often shown a character at a time, into something close to typed text.

#include <Quillet/TextLineObject.h>

#include "text/ForAtts.h"
#include "text/FrequencyMap.h"

#include <Kernel/CharacterType.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace Quillet {

using namespace Story::GlyphAtt;

namespace {

constexpr char32_t c_softHyphen = 0x00AD;
constexpr char32_t c_hyphen = 0x2010;
/// Baselines, and sizes, that are the same.
constexpr double c_sameBaseline = 0.001;
constexpr double c_visibleShift = 0.05;
/// A drop cap is more than that many times as large as the text beside it.
constexpr double c_capRatio = 2;
/// Quotes and brackets before a drop cap; with more it takes longer to tell.
constexpr std::size_t c_fewMarks = 16;

/// Whatever is no number counts too.
bool IsNegative(const Char& c)
{
    return !(c.width >= 0);
}

/// The baseline that most of the characters of one size have.
double GetShift(TextLineObject::Chars::const_iterator first, TextLineObject::Chars::const_iterator last, double size)
{
    FrequencyMap shifts(c_sameBaseline);
    for (; first != last; ++first) {
        if (std::abs(first->GetSize() - size) <= c_sameBaseline) shifts.Add(first->atts->Get(BaselineShift));
    }
    return shifts.GetBestAverage();
}

/// The gap behind a drop cap may have become a space of the cap's size, which is no text.
TextLineObject::Chars::const_iterator SkipGaps(TextLineObject::Chars::const_iterator first,
                                               TextLineObject::Chars::const_iterator last)
{
    return std::find_if(first, last, [](const Char& c) { return !c.isSpace && !c.IsTab(); });
}

} // namespace

void TextLineObject::OnEndOfLine()
{
    if (chars.empty()) return;
    ReorderNegativeWidths();
    StripLeadingSpaces();
    RemoveRedundantSpaces();
    ConvertSoftHyphens();
    ConvertLetterSpaceIntoSpaces();
    StripTrailingSpaces();
    textHeight = GetTextHeight(chars.begin(), chars.end());
    MoveBaseline(FindBaseline());
    UpdateBBox();
}

/// A glyph with a negative advance has the next one to its left.
void TextLineObject::ReorderNegativeWidths()
{
    if (chars.size() == 1) {
        if (!IsNegative(chars.front())) return;
        position.x += chars.front().width;
        chars.front().width = -chars.front().width;
        width = -width;
        return;
    }
    // Changing places leaves every glyph where it is, so that it sorts them by their pens. Where that is more than a
    // few, they are sorted at once.
    std::size_t index = 0;
    for (std::size_t steps = 0; steps < 4 * chars.size(); ++steps) {
        const auto found = std::find_if(chars.begin() + static_cast<std::ptrdiff_t>(index), chars.end(), IsNegative);
        index = static_cast<std::size_t>(found - chars.begin());
        if (index + 1 >= chars.size()) break;
        Char& c = chars[index];
        Char& next = chars[index + 1];
        const double w = c.width;
        if (index == 0) {
            position.x += w;
            width -= w;
        } else {
            chars[index - 1].width += w;
        }
        c.width = w + next.width;
        next.width = -w;
        std::swap(c, next);
        // What is no number stays that, and would be found for ever.
        if (std::isnan(w)) break;
        // Of what was passed already, only the predecessor has changed.
        if (index > 0) --index;
    }
    if (std::any_of(chars.begin(), chars.end() - 1, IsNegative)) SortByPen();
    if (IsNegative(chars.back())) {
        const double before = chars.back().width;
        chars.back().width = chars[chars.size() - 2].width;
        width += chars.back().width - before;
    }
}

void TextLineObject::SortByPen()
{
    std::vector<std::pair<double, Char>> placed;
    placed.reserve(chars.size());
    if (!std::ranges::all_of(chars, [](const Char& c) { return std::isfinite(c.width); })) return;
    double pen = position.x;
    for (Char& c : chars) {
        placed.emplace_back(pen, std::move(c));
        pen += placed.back().second.width;
    }
    std::ranges::stable_sort(placed, {}, &std::pair<double, Char>::first);
    position.x = placed.front().first;
    width = pen - position.x;
    for (std::size_t i = 0; i < placed.size(); ++i) {
        chars[i] = std::move(placed[i].second);
        chars[i].width = (i + 1 < placed.size() ? placed[i + 1].first : pen) - placed[i].first;
    }
}

void TextLineObject::StripLeadingSpaces()
{
    const auto end = std::ranges::find_if(chars, [](const Char& c) { return !c.isSpace && !c.IsTab(); });
    const double stripped = GetWidth(chars.begin(), end);
    position.x += stripped;
    width -= stripped;
    chars.erase(chars.begin(), end);
}

void TextLineObject::RemoveRedundantSpaces()
{
    if (chars.empty()) return;
    std::size_t kept = 0;
    for (std::size_t i = 1; i < chars.size(); ++i) {
        Char& c = chars[i];
        Char& previous = chars[kept];
        if (c.isSpace && c.atts == previous.atts && (previous.isSpace || IsThinSpace(c))) {
            previous.width += c.width;
        } else if (++kept != i) {
            chars[kept] = std::move(c);
        }
    }
    chars.resize(kept + 1);
}

void TextLineObject::ConvertSoftHyphens()
{
    for (Char& c : chars) {
        if (c.unicode == c_softHyphen) c.unicode = c_hyphen;
    }
}

void TextLineObject::ConvertLetterSpaceIntoSpaces()
{
    // Spaces go into a copy: to insert each in its place would cost the rest of the line every time.
    Chars spaced;
    std::size_t copied = 0;
    for (std::size_t i = 0; i < chars.size(); ++i) {
        Char& c = chars[i];
        const auto place = chars.cbegin() + static_cast<std::ptrdiff_t>(i);
        const double own = c.isSpace ? 0 : GetStoryWidth(place, place + 1, false, 1);
        const double threshold = c.GetSize() / 6 * (c.isKerned ? 1 : 3);
        const double excess = c.width - own;
        std::optional<Char> space;
        // A font without a space is seldom the machine's, so that its advances say nothing of gaps.
        if (c.isSpaceDefined && own > 0 && excess >= threshold) {
            c.width -= excess;
            width -= excess;
            space = AddSpace(c, excess, i + 1 < chars.size() ? &chars[i + 1] : nullptr);
        }
        if (!space && copied == 0) continue;
        spaced.insert(spaced.end(), chars.begin() + static_cast<std::ptrdiff_t>(copied),
                      chars.begin() + static_cast<std::ptrdiff_t>(i) + 1);
        copied = i + 1;
        if (space) spaced.push_back(std::move(*space));
    }
    if (copied != 0) chars = std::move(spaced);
}

void TextLineObject::StripTrailingSpaces()
{
    while (!chars.empty() && chars.back().isSpace) {
        width -= chars.back().width;
        chars.pop_back();
    }
}

std::size_t TextLineObject::GetLowCapEnd() const
{
    const auto cap = std::ranges::find_if(chars, [](const Char& c) { return Kernel::IsAlnum(c.unicode); });
    if (cap == chars.end()) return 0;
    const auto text = SkipGaps(cap + 1, chars.end());
    if (text == chars.end()) return 0;
    const double restHeight = GetTextHeight(text, chars.end());
    if (!(cap->GetSize() > c_capRatio * restHeight)) return 0;
    const double drop = cap->atts->Get(BaselineShift) - GetShift(text, chars.end(), restHeight);
    return drop > c_visibleShift ? static_cast<std::size_t>(text - chars.begin()) : 0;
}

bool TextLineObject::MayHaveDropCap() const
{
    const auto end = chars.begin() + static_cast<std::ptrdiff_t>(std::min(chars.size(), c_fewMarks));
    const auto cap = std::find_if(chars.begin(), end, [](const Char& c) { return Kernel::IsAlnum(c.unicode); });
    if (cap == end) return true;
    const auto text = SkipGaps(cap + 1, end);
    return text == end ? end != chars.end() : cap->GetSize() > c_capRatio * text->GetSize();
}

/// The baseline of a line is that of its largest text, not of its first character. A drop cap hangs from the line: the
/// text beside it has the baseline.
double TextLineObject::FindBaseline() const
{
    const auto first = chars.begin() + static_cast<std::ptrdiff_t>(GetLowCapEnd());
    return GetShift(first, chars.end(), first == chars.begin() ? textHeight : GetTextHeight(first, chars.end()));
}

void TextLineObject::MoveBaseline(double shift)
{
    position.y -= shift;
    if (std::abs(shift) <= c_visibleShift) return;
    ForAtts(chars.begin(), chars.end(),
            [shift](Story::GlyphAtts& atts) { atts.Set(BaselineShift, atts.Get(BaselineShift) - shift); });
}

} // namespace Quillet
