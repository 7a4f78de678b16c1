#include <Renderer/LineStyleDescriptor.h>
#include <Renderer/ValueKey.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <numbers>

namespace Renderer {

namespace {

/// Points. No page is near as wide; beyond it, sums with coordinates would lose the coordinates.
constexpr double c_largestReach = 1e9;

bool DrawsLine(const LineStyleDescriptor& descriptor)
{
    const LineStyle* style = descriptor.lineStyle.Get();
    return style && style->dashKind != LineStyle::DashNone && style->width > 0;
}

Kernel::RectT<double> Inflate(const Kernel::RectT<double>& rect, double x, double y)
{
    if (rect.IsEmpty()) return rect;
    return {rect.left - x, rect.top - y, rect.right + x, rect.bottom + y};
}

/// Less is rounding: a line that goes straight on, or one that turns back.
constexpr double c_smallestSine = 1e-9;
/// Mitres that miss their limit by less may be drawn all the same.
constexpr double c_limitTolerance = 1e-6;

using Params = Raster::AffineTransform::Params;
using Point = Kernel::PointT<double>;

Point ApplyToVector(const Params& transform, Point vector)
{
    return {transform.a * vector.x + transform.c * vector.y, transform.b * vector.x + transform.d * vector.y};
}

bool HasDirection(Point direction)
{
    return direction != Point{};
}

/// Finds the mitres of a curve and adds their tips to a box.
class MitreTips
{
public:
    /// `toBox` takes the curve to the space of the box, `pageToBox` vectors on the page.
    MitreTips(const LineStyle& line, const Params& curveToPage, const Params& curveToBox, const Params& vectorToBox)
        : style(line), toPage(curveToPage), toBox(curveToBox), pageToBox(vectorToBox)
    {}

    void AddTo(Kernel::RectT<double>& box, const Geometry::CurveDbl& curve) const
    {
        // Segments without a length have no direction, and those beside them meet.
        Point first;
        Point arriving;
        const auto addSegment = [&](Point start, Point leaving, Point arrivingNext) {
            if (!HasDirection(leaving)) return;
            if (HasDirection(arriving)) {
                AddCorner(box, start, arriving, leaving);
            } else {
                first = leaving;
            }
            arriving = arrivingNext;
        };
        const std::size_t end = 3 * curve.GetSegmentCount();
        if (end == 0) return;
        const auto at = [&](std::size_t i) { return curve.nodes[i].point; };
        for (std::size_t i = 0; i < end; i += 3) {
            addSegment(at(i), GetDirection({at(i + 1) - at(i), at(i + 2) - at(i), at(i + 3) - at(i)}),
                       GetDirection({at(i + 3) - at(i + 2), at(i + 3) - at(i + 1), at(i + 3) - at(i)}));
        }
        if (!curve.isClosed) return;
        const Point closing = GetDirection({at(0) - at(end)});
        addSegment(at(end), closing, closing);
        addSegment(at(0), first, first);
    }

private:
    /// Of the first vector that has one on the page; none if the curve stays in one place.
    Point GetDirection(std::initializer_list<Point> vectors) const
    {
        for (const Point& vector : vectors) {
            const Point onPage = ApplyToVector(toPage, vector);
            const double length = std::hypot(onPage.x, onPage.y);
            if (length > 0 && std::isfinite(length)) return {onPage.x / length, onPage.y / length};
        }
        return {};
    }

    /// The tip lies half the width divided by the sine of half the angle away (ISO 32000-2, 8.4.3.5). Where the line
    /// goes straight on there is no corner, where it turns back no mitre.
    void AddCorner(Kernel::RectT<double>& box, Point corner, Point arriving, Point leaving) const
    {
        const Point outward = arriving - leaving;
        const double sine = std::hypot(arriving.x + leaving.x, arriving.y + leaving.y) / 2;
        const double outwardLength = std::hypot(outward.x, outward.y);
        if (!(sine * style.mitreLimit >= 1 - c_limitTolerance) || sine < c_smallestSine ||
            outwardLength < c_smallestSine) {
            return;
        }
        const double reach = std::min(style.width / 2 / sine, c_largestReach);
        const Point tip = toBox.ApplyTo(corner) + ApplyToVector(pageToBox, outward * (reach / outwardLength));
        if (std::isfinite(tip.x) && std::isfinite(tip.y)) box = box.Union(Kernel::RectT<double>::FromCorners(tip, tip));
    }

    const LineStyle& style;
    const Params& toPage;
    const Params& toBox;
    const Params& pageToBox;
};

} // namespace

LineStyleDescriptor::LineStyleDescriptor(Kernel::Consolidated<LineStyle> style, bool behindFill)
    : lineStyle(std::move(style)), isBehindFill(behindFill)
{}

Kernel::Counted<LineStyleDescriptor> LineStyleDescriptor::CreateNone()
{
    static const Kernel::Counted<LineStyleDescriptor> none = [] {
        LineStyle style;
        style.dashKind = LineStyle::DashNone;
        style.width = 0;
        return Kernel::MakeCounted<LineStyleDescriptor>(Kernel::ConsolidateObjectPostAlloc(style));
    }();
    return none;
}

bool LineStyleDescriptor::IsLineStyleVisible(Kernel::NonCounted<const FillDescriptor> pen) const
{
    return DrawsLine(*this) && pen && !pen->IsEmpty();
}

bool LineStyleDescriptor::IsLineStyleVisible(Kernel::NonCounted<const LineStyleDescriptor> style,
                                             Kernel::NonCounted<const FillDescriptor> pen)
{
    return style && style->IsLineStyleVisible(pen);
}

double LineStyleDescriptor::GetReach(bool hasOpenCurves) const
{
    if (!DrawsLine(*this)) return 0;
    const bool hasEnds = hasOpenCurves || lineStyle->dashKind == LineStyle::DashDashed;
    const bool hasCorners = hasEnds && lineStyle->cap == LineStyle::CapProjectingSquare;
    return std::min(lineStyle->width / 2 * (hasCorners ? std::numbers::sqrt2 : 1), c_largestReach);
}

Kernel::RectT<double> LineStyleDescriptor::InflateBaseRect(const Kernel::RectT<double>& rect, const Params& transform,
                                                           const Params& resultTransform,
                                                           const Geometry::PolyCurveDbl& path) const
{
    const Params fromPage = resultTransform.GetInverse();
    // Without the round trip when it changes nothing, so that a path's box is not blurred by rounding.
    const Params toResult = transform == resultTransform ? Params{} : fromPage * transform;
    const Kernel::RectT<double> base = transform == resultTransform ? rect : toResult.ApplyTo(rect);
    // A circle on the page is an ellipse here; its half extents are the lengths of the rows of the inverse.
    const double reach = GetReach(!path.GetAllCurvesClosed());
    Kernel::RectT<double> box =
        Inflate(base, reach * std::hypot(fromPage.a, fromPage.c), reach * std::hypot(fromPage.b, fromPage.d));
    if (!box.IsEmpty() && HasMitres()) {
        const MitreTips tips(*lineStyle, transform, toResult, fromPage);
        for (const auto& curve : path)
            tips.AddTo(box, *curve);
    }
    return box;
}

Kernel::RectT<double> LineStyleDescriptor::InflateSpreadRect(const Kernel::RectT<double>& rect, const Params& transform,
                                                             const Geometry::CurveDbl& curve) const
{
    const double reach = GetReach(!curve.IsClosed());
    Kernel::RectT<double> box = Inflate(rect, reach, reach);
    if (!box.IsEmpty() && HasMitres()) MitreTips(*lineStyle, transform, transform, Params{}).AddTo(box, curve);
    return box;
}

bool LineStyleDescriptor::HasMitres() const
{
    return DrawsLine(*this) && lineStyle->join == LineStyle::JoinMitre;
}

bool LineStyleDescriptor::IsEqual(const LineStyleDescriptor& other) const
{
    return lineStyle == other.lineStyle && isBehindFill == other.isBehindFill;
}

std::size_t LineStyleDescriptor::GetHash() const
{
    return HashOf(std::tuple(lineStyle.Get(), isBehindFill));
}

} // namespace Renderer
