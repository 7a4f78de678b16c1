// Under which attributes a text engine sets the characters where the file has them.

#include <Quillet/TextLineObject.h>

#include "text/ForAtts.h"
#include "text/FrequencyMap.h"
#include "text/ListAtt.h"

#include <Story/TabStops.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Quillet {

using namespace Story::GlyphAtt;

namespace {

using Iterator = TextLineObject::Chars::const_iterator;

/// Ems: how exactly tracking is the same, and how finely editable text has it.
constexpr double c_trackingTolerance = 0.05;
constexpr double c_exactTrackingTolerance = 0.005;
constexpr double c_runTrackingStep = 0.001;
constexpr double c_lineTrackingStep = 0.005;
constexpr double c_errorStep = 0.001;
/// Points that a line may be off before it is tracked as a whole.
constexpr double c_lineError = 1;
/// Points that are left of a space.
constexpr double c_smallestSpace = 1;
/// Points by which a space may differ from a fixed one.
constexpr double c_fixedSpaceTolerance = 0.15;
constexpr double c_wordSpaceStep = 0.05;
/// A single space that is wider than that says nothing of the others.
constexpr double c_oddSpace = 1.5;
/// Points by which the pen may be off, and the least width of a space that is narrowed.
constexpr double c_penError = 0.5;
constexpr double c_narrowestSpace = 0.1;
/// Of the line's own spaces: where gaps begin that are none of the author's blanks.
constexpr double c_gapRatio = 1.5;
constexpr double c_doubleSpace = 2;
constexpr double c_gapTolerance = 0.05;
constexpr double c_doubleSpaceTolerance = 0.01;
constexpr char32_t c_enSpace = 0x2002;
constexpr char32_t c_emSpace = 0x2003;

double RoundTo(double value, double step)
{
    return std::round(value / step) * step;
}

bool UsesPairKerning(const Char& c, const Char& next)
{
    const Story::GlyphAtts& atts = *c.atts;
    return atts.UsesAutoKerning() && next.atts->GetFontMetrics() == atts.GetFontMetrics() &&
           next.GetSize() == c.GetSize();
}

/// In ems.
double GetPairKerning(const Char& c, int id, const Char& next)
{
    return UsesPairKerning(c, next) ? c.atts->GetFontMetrics()->GetAutoKerning(id, next.GetGlyphMetrics().id) : 0;
}

double GetScale(const Char& c)
{
    return c.GetSize() * c.atts->Get(HorizontalScale);
}

bool IsSentenceEnd(char32_t unicode)
{
    return unicode == U'!' || unicode == U'.' || unicode == U'?';
}

/// The letters of a ligature; none for other characters.
const char* GetLigatureLetters(char32_t unicode)
{
    static constexpr const char* c_latin[] = {"ff", "fi", "fl", "ffi", "ffl"};
    if (unicode >= 0xFB00 && unicode <= 0xFB04) return c_latin[unicode - 0xFB00];
    if (unicode == 0x0132) return "IJ";
    if (unicode == 0x0133) return "ij";
    return "";
}

/// One character for each letter, which share the width as their font would have it.
void ExpandLigature(const Char& ligature, const char* letters, TextLineObject::Chars& target)
{
    const std::size_t first = target.size();
    double sum = 0;
    for (; *letters != 0; ++letters) {
        Char c = ligature;
        c.unicode = static_cast<unsigned char>(*letters);
        c.glyphIndex = -1;
        c.charCode = target.size() == first ? ligature.glyphIndex : -1;
        c.isKerned = letters[1] == 0 && ligature.isKerned;
        c.width = c.GetGlyphMetrics().advance;
        sum += c.width;
        target.push_back(std::move(c));
    }
    const auto count = static_cast<double>(target.size() - first);
    for (std::size_t i = first; i < target.size(); ++i)
        target[i].width = sum == 0 ? ligature.width / count : target[i].width * ligature.width / sum;
}

} // namespace

double TextLineObject::GetStoryWidth(Chars::const_iterator first, Chars::const_iterator last, bool noAutoKern,
                                     double wordSpaceRatio) const
{
    double sum = 0;
    for (; first != last; ++first) {
        const Char& c = *first;
        if (c.IsTab()) {
            sum += c.width;
            continue;
        }
        const Renderer::GlyphMetrics glyph = c.GetGlyphMetrics();
        double advance = glyph.advance;
        const auto next = first + 1;
        if (!noAutoKern && next != chars.end()) advance += GetPairKerning(c, glyph.id, *next);
        advance += c.atts->Get(LetterSpacing);
        if (c.isSpace) advance *= wordSpaceRatio;
        sum += std::max(advance, 0.0) * c.GetSize() * c.atts->Get(HorizontalScale);
    }
    return sum;
}

double TextLineObject::GetStoryWidth(Chars::const_iterator c) const
{
    return GetStoryWidth(c, c + 1, false, wordSpace);
}

double TextLineObject::GetStoryWidth() const
{
    const auto last = std::find_if(chars.rbegin(), chars.rend(), [](const Char& c) { return !c.isSpace; });
    return GetStoryWidth(chars.begin(), last.base(), true, wordSpace);
}

double TextLineObject::GetCharStoryWidth(std::size_t index) const
{
    return GetStoryWidth(chars.begin() + static_cast<std::ptrdiff_t>(index));
}

double TextLineObject::GetStoryAutoKern(Chars::const_iterator c) const
{
    const auto next = c + 1;
    return next == chars.end() ? 0 : GetPairKerning(*c, c->GetGlyphMetrics().id, *next) * GetScale(*c);
}

double TextLineObject::GetLetterSpace(Chars::const_iterator c) const
{
    return (GetStoryWidth(c) - c->width) / c->GetSize();
}

void TextLineObject::ApplyLetterSpace(std::size_t first, std::size_t last, double ems)
{
    // Text without a size has no spacing.
    if (ems == 0 || !std::isfinite(ems)) return;
    const auto at = [this](std::size_t index) { return chars.begin() + static_cast<std::ptrdiff_t>(index); };
    ForAtts(at(first), at(last),
            [ems](Story::GlyphAtts& atts) { atts.Set(LetterSpacing, atts.Get(LetterSpacing) + ems); });
}

void TextLineObject::OnLineComplete()
{
    // It counts characters.
    listCandidate = nullptr;
    AdjustAutoKern();
    AdjustGlobalLetterSpaceAvailable();
    AdjustGlobalLetterSpaceWholeLine();
    AdjustSpaceAtts();
    ShiftErrorsToSpaces();
    ExpandLigatures();
    ApplyFixedSpaces();
    AdjustWordSpace();
    LetterSpaceSpaces();
}

/// Text was set without pair kerning if what it is off by is more regular without.
void TextLineObject::AdjustAutoKern()
{
    FrequencyMap kerned(c_errorStep);
    FrequencyMap plain(c_errorStep);
    for (std::size_t i = 0; i + 1 < chars.size(); ++i) {
        const Char& c = chars[i];
        if (c.isSpace || c.IsTab() || !c.isFontAvailable) continue;
        const double error = GetCharStoryWidth(i) - c.width;
        kerned.Add(error);
        plain.Add(error - GetStoryAutoKern(chars.begin() + static_cast<std::ptrdiff_t>(i)));
    }
    if (plain.buckets.size() >= kerned.buckets.size()) return;
    ForAtts(chars.begin(), chars.end(), [](Story::GlyphAtts& atts) { atts.Set(Kerning, -1.0); });
}

/// Runs of even tracking get it.
void TextLineObject::AdjustGlobalLetterSpaceAvailable()
{
    const bool isExact = fidelity == TextFidelityExact;
    const double tolerance = isExact ? c_exactTrackingTolerance : c_trackingTolerance;
    for (std::size_t first = 0; first < chars.size();) {
        double reference = 0;
        double sum = 0;
        int count = 0;
        std::size_t last = first;
        for (; last + 1 < chars.size(); ++last) {
            const Char& c = chars[last];
            if (c.isSpace || !c.isFontAvailable) continue;
            const double space = GetLetterSpace(chars.begin() + static_cast<std::ptrdiff_t>(last));
            if (!std::isfinite(space)) continue;
            if (count == 0) reference = space;
            // The last but one has no say: the last one, which is not measured, would be a run of its own.
            if (std::abs(space - reference) > tolerance) break;
            sum += space;
            ++count;
        }
        if (last + 2 >= chars.size()) last = chars.size();
        if (count == 0) break;
        const double average = sum / count;
        if (isExact) {
            ApplyLetterSpace(first, last, -average);
        } else if (std::abs(average) > c_trackingTolerance) {
            ApplyLetterSpace(first, last, -RoundTo(average, c_runTrackingStep));
        }
        first = last;
    }
}

/// What is left is shared by all letters.
void TextLineObject::AdjustGlobalLetterSpaceWholeLine()
{
    if (chars.empty()) return;
    double sizes = 0;
    double difference = 0;
    for (std::size_t i = 0; i + 1 < chars.size(); ++i) {
        const Char& c = chars[i];
        if (c.isSpace || c.IsTab()) continue;
        sizes += c.GetSize();
        difference += c.width - GetCharStoryWidth(i);
    }
    if (sizes == 0) return;
    double ems = difference / sizes;
    if (fidelity != TextFidelityExact) {
        if (std::abs(ems) <= c_trackingTolerance && std::abs(difference) <= c_lineError) return;
        ems = RoundTo(ems, c_lineTrackingStep);
    }
    ApplyLetterSpace(0, chars.size(), ems);
}

/// A space is of the font beside it in which it has its width.
void TextLineObject::AdjustSpaceAtts()
{
    const auto adjust = [](Char& c, const Char& neighbour) {
        if (c.atts == neighbour.atts) return;
        const double own = std::abs(c.GetFontWidthOf(U' ') - c.width);
        if (std::abs(neighbour.GetFontWidthOf(U' ') - c.width) < own) c.atts = neighbour.atts;
    };
    for (std::size_t i = 1; i < chars.size(); ++i) {
        if (!chars[i].isSpace) continue;
        adjust(chars[i], chars[i - 1]);
        if (i + 1 < chars.size()) adjust(chars[i], chars[i + 1]);
    }
    textHeight = GetTextHeight(chars.begin(), chars.end());
}

/// A space takes up what the character before it is off by, so that the next word begins where it should.
void TextLineObject::ShiftErrorsToSpaces()
{
    std::size_t kept = 0;
    for (std::size_t i = 0; i < chars.size(); ++i) {
        Char& c = chars[i];
        bool isUsedUp = false;
        if (i + 1 < chars.size() && chars[i + 1].isSpace) {
            Char& space = chars[i + 1];
            const double error = GetCharStoryWidth(i) - c.width;
            isUsedUp = space.width > c_smallestSpace && space.width - error <= c_smallestSpace;
            const double shift = isUsedUp ? space.width : std::min(space.width - c_smallestSpace, error);
            c.width += shift;
            space.width -= shift;
        }
        if (kept != i) chars[kept] = std::move(c);
        ++kept;
        if (isUsedUp) ++i;
    }
    chars.resize(kept);
}

void TextLineObject::ExpandLigatures()
{
    const auto isLigature = [](const Char& c) { return *GetLigatureLetters(c.unicode) != 0; };
    if (fidelity == TextFidelityExact || std::ranges::none_of(chars, isLigature)) return;
    Chars expanded;
    expanded.reserve(chars.size() + chars.size() / 4);
    for (Char& c : chars) {
        if (isLigature(c)) {
            ExpandLigature(c, GetLigatureLetters(c.unicode), expanded);
        } else {
            expanded.push_back(std::move(c));
        }
    }
    chars = std::move(expanded);
}

void TextLineObject::ApplyFixedSpaces()
{
    if (fidelity == TextFidelityExact) return;
    for (Char& c : chars) {
        if (!c.isSpace || !c.isFontAvailable) continue;
        for (const char32_t fixed : {c_emSpace, c_enSpace}) {
            const Renderer::GlyphMetrics glyph = c.atts->GetFontMetrics()->GetGlyphMetrics(fixed);
            // A font that lacks the space has the width of something else for it.
            const double fixedWidth = (glyph.advance + c.atts->Get(LetterSpacing)) * GetScale(c);
            if (glyph.id == 0 || std::abs(fixedWidth - c.width) > c_fixedSpaceTolerance) continue;
            c.unicode = fixed;
            c.isSpace = false;
        }
    }
}

void TextLineObject::AdjustWordSpace()
{
    FrequencyMap ratios(c_wordSpaceStep);
    for (const Char& c : chars) {
        if (!c.isSpace) continue;
        const double ratio = c.GetWordSpace();
        if (ratio >= 1) ratios.Add(ratio);
    }
    const auto best = ratios.GetBest();
    // Where no ratio comes twice, the best is the narrowest: if that is an odd one, all are.
    const bool isOdd = best == ratios.buckets.end() || (best->count == 1 && best->sum > c_oddSpace);
    wordSpace = isOdd ? 1 : best->sum / best->count;
}

/// Spaces are tracked so that the pen is never far off.
void TextLineObject::LetterSpaceSpaces()
{
    if (fidelity != TextFidelityExact) return;
    double error = 0;
    for (std::size_t i = 0; i < chars.size(); ++i) {
        const Char& c = chars[i];
        const double own = GetCharStoryWidth(i);
        error += own - c.width;
        if (!c.isSpace) continue;
        if (IsTabSpace(chars.begin() + static_cast<std::ptrdiff_t>(i))) {
            error = 0;
        } else if (std::abs(error) > c_penError) {
            const double change = std::max(c_narrowestSpace - own, -error);
            ApplyLetterSpace(i, i + 1, change / wordSpace / GetScale(c));
            error += change;
        }
    }
}

void TextLineObject::SetDoubleSpaceAfterPunctuation()
{
    Chars doubled;
    std::size_t copied = 0;
    for (std::size_t i = 0; i + 1 < chars.size(); ++i) {
        Char& space = chars[i + 1];
        const char32_t unicode = chars[i].unicode;
        if (!(IsSentenceEnd(unicode) || unicode == U':') || !space.isSpace) continue;
        if (std::abs(space.GetWordSpace() - c_doubleSpace) > c_doubleSpaceTolerance) continue;
        space.width /= 2;
        doubled.insert(doubled.end(), chars.begin() + static_cast<std::ptrdiff_t>(copied),
                       chars.begin() + static_cast<std::ptrdiff_t>(i) + 2);
        doubled.push_back(space);
        copied = i + 2;
    }
    if (copied == 0) return;
    doubled.insert(doubled.end(), chars.begin() + static_cast<std::ptrdiff_t>(copied), chars.end());
    chars = std::move(doubled);
}

double TextLineObject::GetLineWrapTolerance(double ratio) const
{
    const auto tab = std::find_if(chars.rbegin(), chars.rend(), [](const Char& c) { return c.IsTab(); });
    double spaces = 0;
    for (auto c = tab.base(); c != chars.end(); ++c) {
        if (c->isSpace) spaces += c->width;
    }
    return spaces * ratio;
}

bool TextLineObject::UsesWrap() const
{
    if (!isParagraphBack && !needsLineBreak) return true;
    return paragraphAtts && paragraphAtts->GetTabStops()->HasFromRight();
}

bool TextLineObject::IsTabSpace(Chars::const_iterator c) const
{
    const double ratio = c->GetWordSpace();
    if (ratio <= wordSpace * c_gapRatio) return false;
    if (std::abs(ratio - c_doubleSpace) > c_gapTolerance || c == chars.begin()) return true;
    // Two spaces, as some type them behind a sentence.
    return !IsSentenceEnd((c - 1)->unicode);
}

} // namespace Quillet
