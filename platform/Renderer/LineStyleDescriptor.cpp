#include <Renderer/LineStyleDescriptor.h>
#include <Renderer/ValueKey.h>

#include <algorithm>
#include <cmath>
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

bool HasOpenCurve(const std::vector<bool>& areClosed)
{
    return std::ranges::find(areClosed, false) != areClosed.end();
}

Kernel::RectT<double> Inflate(const Kernel::RectT<double>& rect, double x, double y)
{
    if (rect.IsEmpty()) return rect;
    return {rect.left - x, rect.top - y, rect.right + x, rect.bottom + y};
}

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
    double factor = 1;
    if (lineStyle->join == LineStyle::JoinMitre) factor = std::max(factor, lineStyle->mitreLimit);
    const bool hasEnds = hasOpenCurves || lineStyle->dashKind == LineStyle::DashDashed;
    if (hasEnds && lineStyle->cap == LineStyle::CapProjectingSquare) factor = std::max(factor, std::numbers::sqrt2);
    return std::min(lineStyle->width / 2 * factor, c_largestReach);
}

Kernel::RectT<double> LineStyleDescriptor::InflateBaseRect(const Kernel::RectT<double>& rect,
                                                           const Raster::AffineTransform::Params& transform,
                                                           const Raster::AffineTransform::Params& resultTransform,
                                                           const std::vector<bool>& areClosed) const
{
    const Raster::AffineTransform::Params fromPage = resultTransform.GetInverse();
    // Without the round trip when it changes nothing, so that a path's box is not blurred by rounding.
    const Kernel::RectT<double> base = transform == resultTransform ? rect : (fromPage * transform).ApplyTo(rect);
    // A circle on the page is an ellipse here; its half extents are the lengths of the rows of the inverse.
    const double reach = GetReach(HasOpenCurve(areClosed));
    return Inflate(base, reach * std::hypot(fromPage.a, fromPage.c), reach * std::hypot(fromPage.b, fromPage.d));
}

Kernel::RectT<double> LineStyleDescriptor::InflateSpreadRect(const Kernel::RectT<double>& rect,
                                                             const std::vector<bool>& areClosed) const
{
    return InflateSpreadRect(rect, !HasOpenCurve(areClosed));
}

Kernel::RectT<double> LineStyleDescriptor::InflateSpreadRect(const Kernel::RectT<double>& rect, bool isClosed) const
{
    const double reach = GetReach(!isClosed);
    return Inflate(rect, reach, reach);
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
