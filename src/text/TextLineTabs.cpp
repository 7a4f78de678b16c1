// Gaps of a line that are tabs, and gaps that are several spaces.

#include <Quillet/TextLineObject.h>

#include "document/Limits.h"
#include "text/FrequencyMap.h"

#include <Quillet/Budget.h>

#include <Story/TabStops.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Quillet {

namespace {

/// Points by which stops of one place may differ: where the look of the page matters, hardly at all.
constexpr double c_editableTolerance = 0.25;
constexpr double c_exactTolerance = 0.0025;
/// Of these: stops no farther apart are one place, rounded up and down, or once not rounded.
constexpr double c_samePlace = 1.5;
/// A space that is so much wider than the line's is meant to reach something.
constexpr double c_wideSpace = 3;
/// Of the text height: an item that is short enough to have been set against the right edge.
constexpr double c_maxRightItem = 10;
/// Of the text height: stops of one column of text are no nearer to each other.
constexpr double c_stopDistance = 0.5;
/// More dots than an ellipsis has, and more than it has to have where dots are looked for.
constexpr std::ptrdiff_t c_minLeader = 5;
constexpr std::ptrdiff_t c_minSoughtLeader = 3;
constexpr double c_sameSpaceWidth = 0.5;
/// Of ratios to the line's space.
constexpr double c_sameSpace = 0.1;
constexpr double c_wholeSpaces = 0.05;
constexpr double c_maxSpaces = Limits::c_maxSpacesOfGap;

double GetTolerance(TextFidelity fidelity)
{
    return fidelity == TextFidelityExact ? c_exactTolerance : c_editableTolerance;
}

void MakeTab(Char& c)
{
    c.unicode = U'\t';
    c.glyphIndex = c.charCode = -1;
    c.isSpace = false;
}

/// A sequence that grows in places, copied from the first of them on: to insert each in its place would cost the rest
/// of the line every time.
class Copy
{
public:
    explicit Copy(TextLineObject::Chars& original) : chars(original) {}

    /// Puts what was read up to `place` into the copy.
    void TakeUpTo(std::size_t place)
    {
        copy.insert(copy.end(), chars.begin() + static_cast<std::ptrdiff_t>(taken),
                    chars.begin() + static_cast<std::ptrdiff_t>(place));
        taken = place;
    }
    void Add(const Char& c, std::size_t count = 1) { copy.insert(copy.end(), count, c); }
    void Finish()
    {
        if (copy.empty()) return;
        TakeUpTo(chars.size());
        chars = std::move(copy);
    }

private:
    TextLineObject::Chars& chars;
    TextLineObject::Chars copy;
    std::size_t taken = 0;
};

} // namespace

std::size_t TextLineObject::GetMarkerEnd() const
{
    return std::min(static_cast<std::size_t>(std::max(listStyleCharCount, 0)), chars.size());
}

TextLineObject::Chars::const_iterator TextLineObject::FindEndTab(bool& hasLeader, bool dotsOnly) const
{
    hasLeader = false;
    const auto first = chars.begin() + static_cast<std::ptrdiff_t>(GetMarkerEnd());
    const auto isDot = [](const Char& c) { return c.unicode == U'.'; };
    // Behind the last of the dots in a row that the walk is in.
    auto dotsEnd = chars.end();
    for (auto c = chars.end(); c != first;) {
        --c;
        if (!isDot(*c)) {
            if ((c->isSpace || c->IsTab()) && IsTabSpace(c)) return dotsOnly ? chars.end() : c;
            dotsEnd = c;
            continue;
        }
        if (c != chars.begin() && isDot(*(c - 1))) continue;
        if (dotsEnd - c >= (dotsOnly ? c_minSoughtLeader : c_minLeader)) {
            hasLeader = true;
            return c;
        }
    }
    return chars.end();
}

bool TextLineObject::AreAllSpacesTheSameWidth() const
{
    const Char* known = nullptr;
    return std::all_of(chars.begin() + static_cast<std::ptrdiff_t>(GetMarkerEnd()), chars.end(), [&](const Char& c) {
        if (!c.isSpace) return true;
        if (!known) known = &c;
        return !(std::abs(c.width - known->width) > c_sameSpaceWidth);
    });
}

void TextLineObject::GetTabStops(FrequencyMap& map) const
{
    bool hasLeader = false;
    FindEndTab(hasLeader, false);
    // What stretches all spaces alike is the alignment.
    const bool isStretched =
        paragraphAtts && paragraphAtts->GetAlignment() == Story::AlignX::Justified && !isParagraphBack;
    if (isStretched && !hasLeader && AreAllSpacesTheSameWidth()) return;
    map.Add(position.x);
    const auto first = chars.begin() + static_cast<std::ptrdiff_t>(GetMarkerEnd());
    double pen = position.x + GetWidth(chars.begin(), first);
    for (auto c = first; c != chars.end(); ++c) {
        pen += c->width;
        if (c->isSpace && IsTabSpace(c)) map.Add(pen);
    }
    if (hasLeader) map.Add(position.x + width);
}

void TextLineObject::GetTabStops(Story::TabStops& stops, const Rect& rect, const FrequencyMap& map) const
{
    if (map.buckets.empty()) return;
    const bool isExact = fidelity == TextFidelityExact;
    const double tolerance = GetTolerance(fidelity);
    bool hasLeader = false;
    const auto endTab = HasArtTransform() ? chars.end() : FindEndTab(hasLeader, false);
    const double lineEnd = position.x + width;
    const bool isAtRight = std::abs(lineEnd - rect.right) <= tolerance;
    const auto first = chars.begin() + static_cast<std::ptrdiff_t>(GetMarkerEnd());
    double pen = position.x + GetWidth(chars.begin(), first);
    for (auto c = first; c != chars.end(); ++c) {
        pen += c->width;
        const bool isEndTab = c == endTab;
        if (c->isSpace) {
            const bool isTabSpace = IsTabSpace(c);
            const int frequency = isTabSpace ? map.GetFrequency(pen) : 0;
            const bool isFrequent = frequency >= 2 && frequency == map.GetFrequency(pen, textHeight * c_stopDistance);
            const bool isWide = isExact ? isTabSpace : c->GetWordSpace() > wordSpace * c_wideSpace;
            if (isEndTab || isFrequent || isWide) {
                const bool isRightItem = isEndTab && isAtRight && !hasLeader && !isExact && !isFrequent &&
                                         lineEnd - pen <= textHeight * c_maxRightItem;
                const double place = std::round((pen - rect.left) / tolerance) * tolerance;
                if (!Budget::Spend(Limits::c_entryUnits)) return;
                if (!isRightItem) {
                    stops.Set(Story::TabStop(place, Story::Tab::Left, false));
                } else if (stops.FindInexact(0, true, tolerance) == stops.end()) { // Or else it may have dots.
                    stops.Set(Story::TabStop(0, Story::Tab::Right, true));
                }
            }
        }
        if (isEndTab) break;
    }
    if (!hasLeader) return;
    Story::TabStop leading(0, Story::Tab::Right, true);
    leading.SetLeader(Story::TabLeader::Dots);
    stops.Set(leading);
}

void TextLineObject::ApplyTabStops(const Story::TabStops& stops, const Rect& rect)
{
    if (stops.IsEmpty()) return;
    const double tolerance = GetTolerance(fidelity);
    Copy copy(chars);
    double pen = position.x - rect.left;
    const std::size_t first = GetMarkerEnd();
    for (std::size_t i = 0; i < chars.size(); ++i) {
        Char& c = chars[i];
        const double gapStart = pen;
        pen += c.width;
        if (i < first || !c.isSpace || c.unicode == 0) continue;
        const auto stop = stops.FindInexact(pen, false, tolerance);
        if (stop == stops.end() || !(std::abs(c.GetWordSpace() - wordSpace) > c_sameSpace)) continue;
        MakeTab(c);
        double start = gapStart;
        for (auto passed = stops.FindNextInexact(gapStart, 0, tolerance);
             passed != stops.end() && !passed->fromRight && passed->position < stop->position - c_samePlace * tolerance;
             ++passed) {
            // A tab that begins at a stop goes on to the next one.
            if (!(passed->position > gapStart + tolerance)) continue;
            if (!Budget::Spend(Limits::c_charUnits)) break;
            copy.TakeUpTo(i);
            Char tab = c;
            tab.width = passed->position - start;
            c.width -= tab.width;
            start = passed->position;
            copy.Add(tab);
        }
    }
    copy.Finish();
    ApplyEndTab(stops, tolerance);
}

void TextLineObject::ApplyEndTab(const Story::TabStops& stops, double tolerance)
{
    const auto stop = stops.FindInexact(0, true, tolerance);
    if (stop == stops.end()) return;
    bool hasLeader = false;
    const auto found = FindEndTab(hasLeader, stop->leader != Story::TabLeader::None);
    if (found == chars.end()) return;
    const auto tab = chars.begin() + (found - chars.cbegin());
    MakeTab(*tab);
    if (!hasLeader) return;
    const auto end = std::find_if(tab + 1, chars.end(), [](const Char& c) { return c.unicode != U'.'; });
    tab->width += GetWidth(tab + 1, end);
    chars.erase(tab + 1, end);
}

void TextLineObject::AddMultipleSpaces()
{
    Copy copy(chars);
    for (std::size_t i = GetMarkerEnd(); i < chars.size(); ++i) {
        Char& c = chars[i];
        if (!c.isSpace) continue;
        const double ratio = c.GetWordSpace();
        const double count = std::round(ratio / wordSpace);
        if (!(count >= 2 && count <= c_maxSpaces) || std::abs(ratio - wordSpace * count) > c_wholeSpaces) continue;
        const auto more = static_cast<std::size_t>(count) - 1;
        if (!Budget::Spend(Limits::c_charUnits * more)) break;
        c.width /= count;
        copy.TakeUpTo(i + 1);
        copy.Add(c, more);
    }
    copy.Finish();
}

} // namespace Quillet
