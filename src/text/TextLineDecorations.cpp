// Rules and boxes that are drawn for text: underlines, strikeouts and highlights.

#include "text/TextLineDecorator.h"

#include "document/Limits.h"
#include "objects/SoftMask.h"
#include "text/ForAtts.h"

#include <Quillet/Budget.h>
#include <Quillet/PathObject.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace Quillet {

using namespace Story::GlyphAtt;

namespace {

using Params = Object::Params;
using Rect = Object::Rect;
using Iterator = TextLineObject::Chars::const_iterator;

constexpr double c_transformTolerance = 1e-6;
/// The height of the box of a level line.
constexpr double c_levelTolerance = 1e-5;
/// Points by which a decoration may be off: in x, in its top edge, and in its height.
constexpr double c_endTolerance = 0.25;
constexpr double c_topTolerance = 0.5;
constexpr double c_heightTolerance = 0.1;
/// Programs place rules by what the font says, or by rules of their own.
constexpr Renderer::RuleSource c_ruleSources[] = {Renderer::RuleSource::Font, Renderer::RuleSource::Descent};

bool IsNear(double a, double b, double tolerance)
{
    return std::abs(a - b) <= tolerance;
}

/// Calls `visit` with the attributes of each run of equal ones until it answers false, and answers what it said last.
template <typename Visit>
bool ForRuns(Iterator first, Iterator last, Visit visit)
{
    while (first != last) {
        if (!visit(*first->atts)) return false;
        first = GetRunEnd(first, last);
    }
    return true;
}

/// A length of the page in a space of the same shape.
double GetMeanScale(const Params& pageToSpace)
{
    const double x = pageToSpace.a + pageToSpace.c;
    const double y = pageToSpace.b + pageToSpace.d;
    return std::sqrt((x * x + y * y) / 2);
}

bool IsSolidLine(const PathObject& path)
{
    return path.isStraightLine && path.IsStroked() &&
           path.lineStyleDescriptor->lineStyle->dashKind == Renderer::LineStyle::DashSolid;
}

} // namespace

bool TextLineObject::CanBeDecoration(const PathObject& path)
{
    // A clip may hide some of it, which no attribute of a character can say.
    if (path.opacity != 1 || path.clipPath) return false;
    return IsSolidLine(path) || (path.isRectangle && path.IsFilled() && !path.IsStroked());
}

bool TextLineObject::TryDecoration(const PathObject& path, bool isBehind)
{
    TextLineDecorator decorator(*this);
    const bool isDone = CanBeDecoration(path) && decorator.Try(path, isBehind);
    decorator.Finish();
    return isDone;
}

TextLineDecorator::Rect TextLineDecorator::GetReach(const TextLineObject& line)
{
    const double x = line.position.x;
    const double y = line.position.y;
    return {x - c_endTolerance, -y - line.textHeight, x + line.width + c_endTolerance, line.textHeight - y};
}

std::optional<TextLineDecorator::Decoration> TextLineDecorator::GetAsRectangle(const PathObject& path) const
{
    Rect rect = path.GetAsRectangle();
    const bool isStroke = path.IsStroked();
    if (isStroke && !(rect.GetHeight() <= c_levelTolerance)) return std::nullopt;
    const Params pageToLine = line.transform.GetInverse();
    const Params pathToLine = pageToLine * path.transform;
    if (!(std::abs(pathToLine.b) <= c_transformTolerance && std::abs(pathToLine.c) <= c_transformTolerance))
        return std::nullopt;
    rect = pathToLine.ApplyTo(rect);
    if (isStroke) {
        const double half = path.lineStyleDescriptor->lineStyle->width / 2 * GetMeanScale(pageToLine);
        rect.top -= half;
        rect.bottom += half;
    }
    return Decoration{rect, isStroke ? path.penDescriptor : path.brushDescriptor, rect.top + line.position.y,
                      rect.GetHeight()};
}

std::optional<TextLineDecorator::Range> TextLineDecorator::FindRange(const Rect& rect)
{
    if (pens.empty()) {
        if (!Budget::Spend(Limits::c_walkedCharUnits * line.chars.size())) return std::nullopt;
        pens.reserve(line.chars.size() + 1);
        double pen = line.position.x;
        pens.push_back(pen);
        for (const Char& c : line.chars) {
            pen += c.width;
            pens.push_back(std::max(pens.back(), pen));
        }
    }
    // The first character at an edge or behind it, if it is at the edge.
    const auto find = [this](double x) -> std::optional<std::ptrdiff_t> {
        const auto pen = std::ranges::lower_bound(pens, x - c_endTolerance);
        if (pen == pens.end() || !(*pen <= x + c_endTolerance)) return std::nullopt;
        return pen - pens.begin();
    };
    const auto first = find(rect.left);
    const auto last = find(rect.right);
    if (!first || !last || *first >= *last) return std::nullopt;
    return Range{line.chars.begin() + *first, line.chars.begin() + *last};
}

bool TextLineDecorator::Try(const PathObject& path, bool isBehind)
{
    if (path.blendMode != line.blendMode || path.softMask != line.softMask || line.chars.empty()) return false;
    const auto decoration = GetAsRectangle(path);
    if (!decoration || !GetReach(line).Contains(decoration->rect)) return false;
    const auto range = FindRange(decoration->rect);
    if (!range) return false;
    if (!Budget::Spend(Limits::c_walkedCharUnits * static_cast<unsigned long long>(range->last - range->first)))
        return false;

    const auto& fill = decoration->fill;
    const auto apply = [&](auto change) {
        ForAtts(range->first, range->last, change);
        return isChanged = true;
    };
    // A rule that looks like the text has no fill of its own.
    const auto setFill = [&fill](Story::GlyphAtts& atts, Story::GlyphAtt::Object attribute) {
        if (!fill->IsEqual(*atts.GetFill(Story::GlyphAtt::Fill))) atts.Set(attribute, fill);
    };
    if (isBehind) {
        return FitsHighlight(*range, *decoration) &&
               apply([&fill](Story::GlyphAtts& atts) { atts.Set(HighlightFill, fill); });
    }
    if (FitsUnderline(*range, *decoration)) {
        return apply([&setFill](Story::GlyphAtts& atts) {
            atts.Set(Underline, 1);
            setFill(atts, UnderlineFill);
        });
    }
    return FitsStrikeout(*range, *decoration) && apply([&setFill](Story::GlyphAtts& atts) {
               atts.Set(Strikeout, 1);
               setFill(atts, StrikeoutFill);
           });
}

void TextLineDecorator::Finish()
{
    if (std::exchange(isChanged, false)) line.UpdateBBox();
}

bool TextLineDecorator::FitsHighlight(const Range& range, const Decoration& decoration)
{
    // Programs begin the background of a text at its ascent, or above it by what the font adds between lines.
    return std::ranges::any_of(std::array{false, true}, [&](bool hasLineGap) {
        return ForRuns(range.first, range.last, [&](const Story::GlyphAtts& atts) {
            const double ascent = atts.GetAscent() + (hasLineGap ? atts.GetLineGap() : 0);
            return IsNear(-ascent - atts.GetTotalAdvanceY(), decoration.top, c_topTolerance) &&
                   IsNear(ascent + atts.GetDescent(), decoration.height, c_heightTolerance);
        });
    });
}

bool TextLineDecorator::FitsUnderline(const Range& range, const Decoration& decoration)
{
    return std::ranges::any_of(c_ruleSources, [&](Renderer::RuleSource source) {
        // One rule serves text of several sizes: it is that of the largest.
        double top = -std::numeric_limits<double>::infinity();
        double height = top;
        ForRuns(range.first, range.last, [&](const Story::GlyphAtts& atts) {
            const Renderer::TextRule rule = atts.GetFontMetrics()->GetUnderline(source);
            top = std::max(top, rule.top * atts.GetSize());
            height = std::max(height, rule.thickness * atts.GetSize());
            return true;
        });
        return IsNear(top, decoration.top, c_topTolerance) && IsNear(height, decoration.height, c_heightTolerance);
    });
}

bool TextLineDecorator::FitsStrikeout(const Range& range, const Decoration& decoration)
{
    return std::ranges::any_of(c_ruleSources, [&](Renderer::RuleSource source) {
        return ForRuns(range.first, range.last, [&](const Story::GlyphAtts& atts) {
            const Renderer::TextRule rule = atts.GetFontMetrics()->GetStrikeout(source);
            return IsNear(rule.top * atts.GetSize(), decoration.top, c_topTolerance) &&
                   IsNear(rule.thickness * atts.GetSize(), decoration.height, c_heightTolerance);
        });
    });
}

} // namespace Quillet
