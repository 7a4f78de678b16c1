#include "objects/reduction/GradientRecognition.h"

#include <Raster/Pixel.h>
#include <Renderer/ColourCMYK.h>
#include <Renderer/ColourLAB.h>
#include <Renderer/ColourRGB.h>
#include <Renderer/FillGradient.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <utility>

namespace Quillet::Reduction {

namespace {

using Point = Kernel::PointT<double>;
using Colour = Kernel::Consolidated<Renderer::Colour>;

/// Tables of a few coloured fields are no gradients.
constexpr std::size_t c_fewestStrips = 16;
/// Strips lie upright to each other up to this, ellipses up to the second.
constexpr double c_linearSlant = 1e-5;
constexpr double c_ellipticalSlant = 0.1;
/// Gaps between strips up to this do not show.
constexpr double c_gap = 0.001;
constexpr double c_edgeTolerance = 0.005;
constexpr double c_centreTolerance = 0.001;
/// By how far the width of an ellipse may be off the shape of the first.
constexpr double c_shapeTolerance = 0.1;
/// Places at which colours are looked up: as many as a byte can tell apart.
constexpr int c_probeCount = 256;
/// Two steps of a byte.
constexpr double c_colourTolerance = 0.0078125;

bool IsUpright(const Params& map, double slant)
{
    return std::abs(map.b) <= slant && std::abs(map.c) <= slant;
}

bool DoTouch(const Rect& a, const Rect& b)
{
    const Rect wide = b.Inflated(c_gap);
    return a.left < wide.right && wide.left < a.right && a.top < wide.bottom && wide.top < a.bottom;
}

std::optional<GradientType> GetDirection(const Rect& a, const Rect& b)
{
    const auto isNear = [](double x, double y) { return std::abs(x - y) <= c_edgeTolerance; };
    if (isNear(a.top, b.top) && isNear(a.bottom, b.bottom)) return GradientType::AlongX;
    if (isNear(a.left, b.left) && isNear(a.right, b.right)) return GradientType::AlongY;
    return std::nullopt;
}

/// The unit square onto a rectangle.
Params MakeFrame(const Rect& rect)
{
    return Params::Translation(rect.left, rect.top) * Params::Scale(rect.GetWidth(), rect.GetHeight());
}

/// The ramp runs along x of the unit square. For strips along y it is laid on its side and turned by 90 degrees about
/// the centre, so that it runs from the top of `rect` to its bottom.
Params MakeLinearPlacement(const LinearGradient& gradient)
{
    const Rect& rect = gradient.rect;
    if (rect.IsEmpty()) return {};
    if (gradient.type == GradientType::AlongX) return MakeFrame(rect);
    const Point centre = rect.GetCentre();
    const double halfWidth = rect.GetWidth() / 2, halfHeight = rect.GetHeight() / 2;
    const Rect onSide{centre.x - halfHeight, centre.y - halfWidth, centre.x + halfHeight, centre.y + halfWidth};
    const Params quarterTurn = Params::FromPdf(0, 1, -1, 0, 0, 0);
    return Params::Translation(centre.x, centre.y) * quarterTurn * Params::Translation(-centre.x, -centre.y) *
           MakeFrame(onSide);
}

/// The unit circle onto the ellipse in a rectangle.
Params MakeEllipticalPlacement(const Rect& rect)
{
    if (rect.IsEmpty()) return {};
    const Point centre = rect.GetCentre();
    return Params::Translation(centre.x, centre.y) * Params::Scale(rect.GetWidth() / 2, rect.GetHeight() / 2);
}

double GetDistance(double value, double from, double to)
{
    if (value < from) return from - value;
    if (value > to) return value - to;
    return 0;
}

bool IsBetween(float a, float b, float c, float t)
{
    return std::abs(c * t + a * (1 - t) - b) <= c_colourTolerance;
}

/// Rounded, as integers are.
bool IsBetween(std::uint16_t a, std::uint16_t b, std::uint16_t c, float t)
{
    const auto expected =
        static_cast<std::uint16_t>(static_cast<float>(c) * t + static_cast<float>(a) * (1 - t) + 0.5F);
    return expected == b;
}

template <typename Channel>
bool IsChannelBetween(const Channel& a, const Channel& b, const Channel& c, float t)
{
    if constexpr (std::is_same_v<typename Channel::Sample, Raster::NoSample>) {
        return true;
    } else {
        const auto& [sampleA] = a;
        const auto& [sampleB] = b;
        const auto& [sampleC] = c;
        return IsBetween(sampleA, sampleB, sampleC, t);
    }
}

template <typename C1, typename C2, typename C3, typename C4, typename C5>
bool IsPixelBetween(const Raster::Pixel<C1, C2, C3, C4, C5>& a, const Raster::Pixel<C1, C2, C3, C4, C5>& b,
                    const Raster::Pixel<C1, C2, C3, C4, C5>& c, float t)
{
    return IsChannelBetween<C1>(a, b, c, t) && IsChannelBetween<C2>(a, b, c, t) && IsChannelBetween<C3>(a, b, c, t) &&
           IsChannelBetween<C4>(a, b, c, t) && IsChannelBetween<C5>(a, b, c, t);
}

/// False if one of the colours is no `Model`.
template <typename Model>
bool IsColourBetween(const Colour& a, const Colour& b, const Colour& c, float t)
{
    const auto* modelA = dynamic_cast<const Model*>(&a->GetPlain());
    const auto* modelB = dynamic_cast<const Model*>(&b->GetPlain());
    const auto* modelC = dynamic_cast<const Model*>(&c->GetPlain());
    return modelA && modelB && modelC && IsPixelBetween(modelA->pixel, modelB->pixel, modelC->pixel, t);
}

} // namespace

const PathObject* ToGradientStrip(const Object& object)
{
    if (object.GetKind() != Object::Kind::Path || object.softMask || object.clipPath) return nullptr;
    if (object.bbox.right == object.bbox.left || object.bbox.bottom == object.bbox.top) return nullptr;
    const auto& path = static_cast<const PathObject&>(object);
    return !path.IsStroked() && path.IsSolidFilled() ? &path : nullptr;
}

std::optional<LinearGradient> GetLinearGradient(const GroupObject& group)
{
    if (group.children.size() < c_fewestStrips) return std::nullopt;
    const PathObject* const first = ToGradientStrip(*group.children.front());
    if (!first || !first->isRectangle) return std::nullopt;
    const Params toFirst = first->transform.GetInverse();
    LinearGradient gradient{GradientType::AlongX, first->bbox};
    for (std::size_t i = 1; i < group.children.size(); ++i) {
        const PathObject* const strip = ToGradientStrip(*group.children[i]);
        if (!strip || !strip->isRectangle) return std::nullopt;
        const Params map = toFirst * strip->transform;
        if (!IsUpright(map, c_linearSlant)) return std::nullopt;
        const Rect box = map.ApplyTo(strip->bbox);
        if (!DoTouch(box, gradient.rect)) return std::nullopt;
        const std::optional<GradientType> direction = GetDirection(box, gradient.rect);
        if (!direction || (i > 1 && *direction != gradient.type)) return std::nullopt;
        gradient.type = *direction;
        gradient.rect = gradient.rect.Union(box);
    }
    return gradient;
}

bool IsEllipticalGradient(const GroupObject& group)
{
    if (group.children.size() < c_fewestStrips) return false;
    const PathObject* const background = ToGradientStrip(*group.children[0]);
    const PathObject* const first = ToGradientStrip(*group.children[1]);
    if (!background || !background->isRectangle || !first || !first->isEllipse) return false;
    const Params toFirst = first->transform.GetInverse();
    const Point centre = first->bbox.GetCentre();
    const double aspect = first->bbox.GetWidth() / first->bbox.GetHeight();
    return std::all_of(group.children.begin() + 2, group.children.end(), [&](const Kernel::Counted<Object>& child) {
        const PathObject* const strip = ToGradientStrip(*child);
        if (!strip || !strip->isEllipse) return false;
        const Params map = toFirst * strip->transform;
        const Rect box = map.ApplyTo(strip->bbox);
        const Point offset = box.GetCentre() - centre;
        return IsUpright(map, c_ellipticalSlant) && std::abs(offset.x) <= c_centreTolerance &&
               std::abs(offset.y) <= c_centreTolerance &&
               std::abs(box.GetWidth() / box.GetHeight() - aspect) <= c_shapeTolerance / box.GetHeight();
    });
}

std::vector<Colour> GetColours(const GroupObject& group, GradientType type, const Rect& rect, int count)
{
    struct Probe
    {
        std::size_t place;
        Point onPage;
        double leastDistance = std::numeric_limits<double>::max();
    };
    const bool isElliptical = type == GradientType::Elliptical;
    const Object& reference = *group.children[isElliptical ? 1 : 0];
    std::vector<const Object*> nearest(static_cast<std::size_t>(count), &reference);
    std::vector<Probe> probes;
    for (std::size_t i = 0; i < nearest.size(); ++i) {
        const double position = static_cast<double>(i) / (count - 1);
        // Strips share the other coordinate, so one place on the diagonal serves both directions.
        const Point own = isElliptical
                              ? Point{rect.left + rect.GetWidth() / 2 + position * rect.GetWidth() / 2,
                                      rect.top + rect.GetHeight() / 2}
                              : Point{rect.left + rect.GetWidth() * position, rect.top + rect.GetHeight() * position};
        probes.push_back({i, reference.transform.ApplyTo(own)});
    }
    // From the topmost strip down, all places at once, so that a large stack is gone through once.
    for (auto child = group.children.rbegin(); child != group.children.rend() && !probes.empty(); ++child) {
        const Object& strip = **child;
        const Params toStrip = strip.transform.GetInverse();
        const Rect& box = strip.bbox;
        for (std::size_t i = 0; i < probes.size();) {
            Probe& probe = probes[i];
            const Point own = toStrip.ApplyTo(probe.onPage);
            const double distance = type == GradientType::AlongY ? GetDistance(own.y, box.top, box.bottom)
                                                                 : GetDistance(own.x, box.left, box.right);
            if (distance < probe.leastDistance) {
                probe.leastDistance = distance;
                nearest[probe.place] = &strip;
            }
            if (probe.leastDistance == 0) {
                probe = probes.back();
                probes.pop_back();
            } else {
                ++i;
            }
        }
    }
    std::vector<Colour> colours;
    colours.reserve(nearest.size());
    for (const Object* strip : nearest)
        colours.push_back(static_cast<const PathObject*>(strip)->GetBrushDescriptor()->fill->GetColour());
    return colours;
}

bool IsInterpolate(const Renderer::ColourPosition& a, const Renderer::ColourPosition& b,
                   const Renderer::ColourPosition& c)
{
    const Raster::ColourSpace model = a.colour->GetModel();
    if (b.colour->GetModel() != model || c.colour->GetModel() != model) return false;
    const auto t = static_cast<float>((b.position - a.position) / (c.position - a.position));
    switch (model) {
    case Raster::ColourSpace::Rgb:
        return IsColourBetween<Renderer::ColourRGB>(a.colour, b.colour, c.colour, t);
    case Raster::ColourSpace::Cmyk:
        return IsColourBetween<Renderer::ColourCMYK>(a.colour, b.colour, c.colour, t);
    case Raster::ColourSpace::Lab:
        return IsColourBetween<Renderer::ColourLAB>(a.colour, b.colour, c.colour, t);
    case Raster::ColourSpace::None:
    case Raster::ColourSpace::Gray:
    case Raster::ColourSpace::OtherRgb:
        return false;
    }
    return false;
}

Kernel::Consolidated<Renderer::Gradient> MakeGradient(const GroupObject& group, GradientType type, const Rect& rect)
{
    const std::vector<Colour> colours = GetColours(group, type, rect, c_probeCount);
    std::vector<Renderer::ColourPosition> stops;
    for (std::size_t i = 0; i < colours.size(); ++i) {
        Renderer::ColourPosition stop{colours[i], static_cast<double>(i) / (c_probeCount - 1)};
        if (i > 1 && IsInterpolate(stops[stops.size() - 2], stops.back(), stop)) {
            stops.back() = std::move(stop);
        } else {
            stops.push_back(std::move(stop));
        }
    }
    return Renderer::Gradient::Create(stops);
}

Kernel::Counted<Renderer::FillDescriptor> MakeGradientFill(const GroupObject& group)
{
    const auto makeFill = [](Renderer::FillGradient::FillGradientType type,
                             const Kernel::Consolidated<Renderer::Gradient>& gradient, const Params& placement) {
        return Kernel::MakeCounted<Renderer::FillDescriptor>(
            Kernel::ConsolidateObjectPostAlloc(Renderer::FillGradient(type, gradient)), true, placement,
            Renderer::FillBlendMode::Normal, false);
    };
    if (const std::optional<LinearGradient> linear = GetLinearGradient(group)) {
        return makeFill(Renderer::FillGradient::Linear, MakeGradient(group, linear->type, linear->rect),
                        group.children[0]->transform * MakeLinearPlacement(*linear));
    }
    if (IsEllipticalGradient(group)) {
        const Object& first = *group.children[1];
        return makeFill(Renderer::FillGradient::Elliptical, MakeGradient(group, GradientType::Elliptical, first.bbox),
                        first.transform * MakeEllipticalPlacement(first.bbox));
    }
    return nullptr;
}

} // namespace Quillet::Reduction
