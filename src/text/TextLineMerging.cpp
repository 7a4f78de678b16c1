// Lines that are parts of one line, and a line that is two.

#include <Quillet/TextLineObject.h>

#include "document/Limits.h"
#include "text/ForAtts.h"
#include "text/ListAtt.h"

#include <Quillet/Budget.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <optional>
#include <utility>

namespace Quillet {

using namespace Story::GlyphAtt;

namespace {

using Chars = TextLineObject::Chars;

/// Points that make no other baseline.
constexpr double c_sameBaseline = 1;
constexpr double c_visibleShift = 0.05;
/// Points by which the advance of a character may reach under the next.
constexpr double c_overlap = 1;
/// Of a size, as baselines are.
constexpr double c_sameSize = 0.001;

bool IsGap(const Char& c)
{
    return c.isSpace || c.IsTab();
}

struct Span
{
    double left;
    double right;
};

/// What a character at a pen covers in x; nothing for one without an outline.
std::optional<Span> GetInk(double pen, const Char& c)
{
    const auto box = c.GetGlyphMetrics().box;
    if (box.IsEmpty()) return std::nullopt;
    const double scale = c.GetSize() * c.atts->Get(HorizontalScale);
    const auto [left, right] = std::minmax({box.left * scale, box.right * scale});
    return Span{pen + left, pen + right};
}

void MoveDown(Chars::iterator first, Chars::iterator last, double distance)
{
    if (!(std::abs(distance) > c_visibleShift)) return;
    ForAtts(first, last,
            [distance](Story::GlyphAtts& atts) { atts.Set(BaselineShift, atts.Get(BaselineShift) + distance); });
}

} // namespace

/// Keeps the characters apart before and behind the place of the last insertion. Pens mostly rise from one insertion to
/// the next, so that all of them together take one walk along the line.
class TextLineObject::MergeSweep
{
public:
    explicit MergeSweep(TextLineObject& swept)
        : line(swept),
          after(std::make_move_iterator(swept.chars.rbegin()), std::make_move_iterator(swept.chars.rend())),
          pen(swept.position.x)
    {
        line.chars.clear();
    }
    MergeSweep(const MergeSweep&) = delete;
    MergeSweep& operator=(const MergeSweep&) = delete;
    ~MergeSweep()
    {
        before.insert(before.end(), std::make_move_iterator(after.rbegin()), std::make_move_iterator(after.rend()));
        line.chars = std::move(before);
    }

    /// Where the pen is at the last character.
    double GetLastStart() const
    {
        return line.position.x + line.width - (after.empty() ? before.back() : after.front()).width;
    }

    /// Puts a character where its pen is, at the cost of the gaps beside it: what stands behind does not move.
    void Insert(double x, Char c, double dy)
    {
        Seek(x);
        const double nextPen = pen;
        if (!before.empty()) {
            auto space = line.AddSpace(before.back(), x - nextPen, nullptr);
            pen = lastPen + before.back().width;
            if (space) Pass(std::move(*space));
        }
        line.width += c.width;
        if (!after.empty()) {
            auto space = line.AddSpace(c, nextPen - (x + c.width), &after.back());
            if (space) after.push_back(std::move(*space));
            if (IsThinSpace(after.back())) {
                c.width += after.back().width;
                after.pop_back();
            }
        }
        after.push_back(std::move(c));
        MoveDown(after.end() - 1, after.end(), dy);
    }

private:
    /// Goes to the first character whose pen is not before `x`.
    void Seek(double x)
    {
        if (x < lastX && Budget::Spend(Limits::c_walkedCharUnits * before.size())) {
            after.insert(after.end(), std::make_move_iterator(before.rbegin()), std::make_move_iterator(before.rend()));
            before.clear();
            pen = line.position.x;
        }
        lastX = x;
        while (!after.empty() && pen < x) {
            Char c = std::move(after.back());
            after.pop_back();
            Pass(std::move(c));
        }
    }

    void Pass(Char c)
    {
        lastPen = pen;
        pen += c.width;
        before.push_back(std::move(c));
    }

    TextLineObject& line;
    Chars before;
    /// From the last to the first.
    Chars after;
    /// Behind `before`, and at its last.
    double pen;
    double lastPen = 0;
    double lastX = -std::numeric_limits<double>::infinity();
};

bool TextLineObject::CanMergeWith(const TextLineObject& other) const
{
    if (chars.empty()) return true;
    if (other.chars.empty() || blendMode != other.blendMode) return false;
    if (!(std::abs(position.y - other.position.y) <= c_sameBaseline) &&
        !CanMoveToY(other.position.y, other.chars.front().atts) && !other.CanMoveToY(position.y, chars.front().atts)) {
        return false;
    }
    const double height = std::max(textHeight, other.textHeight);
    const double end = position.x + width;
    const double otherEnd = other.position.x + other.width;
    // At the end, a piece costs its own length. At other places it costs that of the line too, and a line may come in
    // any number of pieces: whoever has not paid for that keeps them apart.
    if (other.position.x > end) return other.position.x - end < height;
    const auto length = static_cast<unsigned long long>(chars.size());
    if (otherEnd < position.x)
        return position.x - otherEnd < height && Budget::Spend(Limits::c_walkedCharUnits * length);
    const double lastStart = end - chars.back().width;
    const bool isAtEnd = other.position.x >= lastStart;
    if (!isAtEnd && !Budget::Spend(Limits::c_walkedCharUnits * (length + other.chars.size()))) return false;
    auto own = isAtEnd ? chars.end() - 1 : chars.begin();
    double ownPen = isAtEnd ? lastStart : position.x;
    double pen = other.position.x;
    for (const Char& c : other.chars) {
        const double next = pen + c.width;
        if (!IsGap(c)) {
            for (; own != chars.end() && ownPen + own->width <= pen + c_overlap; ++own)
                ownPen += own->width;
            double p = ownPen;
            for (auto o = own; o != chars.end() && p < next; ++o) {
                if (!IsGap(*o) && OverlapsX(p, *o, pen, c)) return false;
                if (!Budget::Spend(1)) return false;
                p += o->width;
            }
        }
        pen = next;
    }
    return true;
}

bool TextLineObject::OverlapsX(double pen, const Char& c, double otherPen, const Char& other) const
{
    const auto ink = GetInk(pen, c);
    const auto otherInk = GetInk(otherPen, other);
    return ink && otherInk && ink->left < otherInk->right && otherInk->left < ink->right;
}

void TextLineObject::Merge(const TextLineObject& other)
{
    listCandidate = nullptr;
    if (chars.empty()) {
        blendMode = other.blendMode;
        position = other.position;
        width = other.width;
        chars = other.chars;
        MeasureAll();
        return;
    }
    const double dy = position.y - other.position.y;
    auto c = other.chars.begin();
    double pen = other.position.x;
    for (; c != other.chars.end() && pen < position.x; ++c)
        pen += c->width;
    const std::size_t oldCount = chars.size();
    MergeCharsFront(other.position.x, other.chars.begin(), c, dy);
    const std::size_t front = chars.size() - oldCount;

    bool isSwept = false;
    if (c != other.chars.end() && pen < position.x + width - chars.back().width) {
        // All of the line is moved and measured, however short the other is. Who has no more to spend begins no merge.
        Budget::Spend(Limits::c_measuredCharUnits * chars.size());
        MergeSweep sweep(*this);
        for (; c != other.chars.end() && pen < sweep.GetLastStart(); ++c) {
            if (!IsGap(*c)) {
                sweep.Insert(pen, *c, dy);
                isSwept = true;
            }
            pen += c->width;
        }
    }
    // The last character may have another width now.
    const std::size_t back = c == other.chars.end() ? chars.size() : chars.size() - 1;
    MergeCharsBack(pen, c, other.chars.end(), dy);
    if (isSwept) {
        MeasureAll();
    } else {
        MeasureEnds(front, back);
    }
}

void TextLineObject::MergeCharsFront(double x, Chars::const_iterator first, Chars::const_iterator last, double dy)
{
    if (first == last) return;
    Chars front(first, last);
    const double added = GetWidth(first, last);
    width += added;
    auto space = AddSpace(front.back(), position.x - (x + added), nullptr);
    MoveDown(front.begin(), front.end(), dy);
    if (space) front.push_back(std::move(*space));
    chars.insert(chars.begin(), std::make_move_iterator(front.begin()), std::make_move_iterator(front.end()));
    position.x = x;
}

void TextLineObject::MergeCharsBack(double x, Chars::const_iterator first, Chars::const_iterator last, double dy)
{
    if (first == last) return;
    AddSpaceAtEnd(x - (position.x + width));
    const auto count = last - first;
    chars.insert(chars.end(), first, last);
    MoveDown(chars.end() - count, chars.end(), dy);
    width += GetWidth(first, last);
}

void TextLineObject::MeasureAll()
{
    textHeight = GetTextHeight(chars.begin(), chars.end());
    KeepBaseline();
    UpdateBBox();
}

/// A line that is put together from a hundred pieces would be off by a hundred times what does not show.
void TextLineObject::KeepBaseline()
{
    const double shift = FindBaseline();
    if (std::abs(shift) > c_visibleShift) MoveBaseline(shift);
}

void TextLineObject::MeasureEnds(std::size_t front, std::size_t back)
{
    const auto frontEnd = chars.cbegin() + static_cast<std::ptrdiff_t>(front);
    const auto backBegin = chars.cbegin() + static_cast<std::ptrdiff_t>(back);
    const double oldHeight = textHeight;
    textHeight = std::max({textHeight, GetTextHeight(chars.begin(), frontEnd), GetTextHeight(backBegin, chars.end())});
    // Text on the baseline leaves that where it is, and so does smaller text anywhere.
    const auto isOff = [this](const Char& c) {
        return std::abs(c.GetSize() - textHeight) <= c_sameSize &&
               !(std::abs(c.atts->Get(BaselineShift)) < c_visibleShift - c_sameSize);
    };
    const bool mayMove =
        textHeight != oldHeight || front != 0 || MayHaveDropCap() || std::any_of(backBegin, chars.cend(), isOff);
    const double oldY = position.y;
    if (mayMove && Budget::Spend(Limits::c_walkedCharUnits * chars.size())) KeepBaseline();
    const bool isNarrower = back < chars.size() && chars[back].atts->Get(Underline) != 0;
    // The box of the rest is known, but not when the clip has cut it.
    if ((clipPath || bbox == Rect{} || isNarrower || position.y != oldY) &&
        Budget::Spend(Limits::c_measuredCharUnits * chars.size())) {
        UpdateBBox();
        return;
    }
    const Rect frontBox = GetBoxOf(chars.begin(), frontEnd, 0);
    const Rect backBox = GetBoxOf(backBegin, chars.end(), width - GetWidth(backBegin, chars.end()));
    SetBBox(bbox.Union(frontBox).Union(backBox));
}

TextLineObject::Chars::const_iterator TextLineObject::FindGap(double gapWidth) const
{
    if (chars.empty()) return chars.end();
    const auto gap = std::find_if(chars.begin() + 1, chars.end(),
                                  [gapWidth](const Char& c) { return IsGap(c) && c.width >= gapWidth; });
    // What stands behind will be a line of its own, and that may have gaps again; columns that are taken apart look
    // again at all lines that are left.
    const auto rest = static_cast<unsigned long long>(chars.end() - gap);
    return Budget::Spend(Limits::c_measuredCharUnits * rest + Limits::c_walkedCharUnits * (chars.size() - rest))
               ? gap
               : chars.end();
}

Kernel::Counted<TextLineObject> TextLineObject::Split(Chars::const_iterator first, Chars::const_iterator second,
                                                      int newId)
{
    auto rest = Kernel::MakeCounted<TextLineObject>(*this, newId, first, chars.cend());
    chars.erase(second, chars.cend());
    width = GetWidth(chars.begin(), chars.end());
    textHeight = GetTextHeight(chars.begin(), chars.end());
    listCandidate = nullptr;
    UpdateBBox();
    return rest;
}

} // namespace Quillet
