#include "content/GraphicsState.h"

#include "colour/ColourSpace.h"
#include "colour/ColourSpaceFactory.h"
#include "document/Resources.h"
#include "document/Limits.h"
#include "fonts/Font.h"
#include "objects/SoftMask.h"
#include "content/TextHandler.h"

#include <Quillet/Budget.h>
#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>

#include <Renderer/FillDescriptor.h>
#include <Renderer/LineStyle.h>
#include <Renderer/LineStyleDescriptor.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace Quillet {

namespace {

using Kernel::Counted;
using Params = Raster::AffineTransform::Params;
using Rect = Kernel::RectT<double>;

/// Keeps dashes, which are multiples of the width, finite on a line of no width.
constexpr double c_smallestWidth = 1e-9;
constexpr double c_smallestDashWidth = 1e-6;

std::pair<double, double> SineCosine(int degrees)
{
    switch (degrees % 360) {
    case 0:
        return {0, 1};
    case 90:
        return {1, 0};
    case 180:
        return {0, -1};
    case 270:
        return {-1, 0};
    default:
        const double angle = degrees * std::numbers::pi / 180;
        return {std::sin(angle), std::cos(angle)};
    }
}

/// The clockwise turn about the centre of `from` that lands on the centre of `to`.
Params MakeTurn(const Rect& from, const Rect& to, int degrees)
{
    const auto [s, c] = SineCosine(degrees);
    const Kernel::PointT<double> r = from.GetCentre();
    const Kernel::PointT<double> a = to.GetCentre();
    return {c, s, a.x - s * r.y - c * r.x, -s, c, a.y + s * r.x - c * r.y};
}

/// Moves `page`, y upward, to the origin, y downward.
Params MakePlacement(const Rect& page)
{
    if (page.IsEmpty() || page.GetWidth() == 0 || page.GetHeight() == 0) return {};
    return {1, 0, -page.left, 0, -1, page.bottom};
}

} // namespace

GraphicsState::GraphicsState(Kernel::NonCounted<const Page> statePage, TextHandler& handlerOfText)
    : ErrorForwarder(statePage ? statePage->GetErrorHandler() : nullptr), page(statePage.Get()),
      textHandler(handlerOfText)
{
    if (page) fillColourSpace = page->ref.GetColourSpaceFactory()->MakeDeviceGray(page->GetResources());
    strokeColourSpace = fillColourSpace;
    fillDescriptor =
        fillColourSpace ? fillColourSpace->MakeDefaultFillDescriptor() : Renderer::FillDescriptor::CreateNone();
    strokeDescriptor = fillDescriptor;
}

GraphicsState::GraphicsState(const GraphicsState& other) = default;
GraphicsState::GraphicsState(GraphicsState&& other) noexcept = default;
GraphicsState::~GraphicsState() = default;

void GraphicsState::SetSource(const Rect&, const Rect& trim, const Rect& clip, int rotate)
{
    const Rect turned = PageBase::ApplyRotate(trim, rotate);
    ltCurrent = MakePlacement(turned);
    if (rotate != 0) ltCurrent = ltCurrent * MakeTurn(trim, turned, rotate);
    SetLtDefault();

    if (clip.IsEmpty()) {
        PushGroup(Kernel::MakeCounted<GroupObject>(page));
    } else {
        PushClippingPath(clip, ltCurrent);
    }
}

void GraphicsState::PushClippingPath(const Geometry::PolyCurveDbl& path, Geometry::WindingOrderMode mode,
                                     const Params& transform)
{
    PushGroup(Kernel::MakeCounted<GroupObject>(page, path, mode, transform));
}

void GraphicsState::PushClippingPath(const Rect& rect, const Params& transform)
{
    PushClippingPath(Geometry::PolyCurveDbl(rect), Geometry::WindingOrderMode::NonZero, transform);
}

void GraphicsState::PushGroup(Counted<GroupObject> group)
{
    if (currentGroup) AddObject(group);
    currentGroup = std::move(group);
}

void GraphicsState::PopGroup()
{
    // Nothing lies above the root.
    const Kernel::NonCounted<Object> parent = currentGroup ? currentGroup->parent : nullptr;
    if (parent && parent->AsGroup()) currentGroup = parent->AsGroup();
}

void GraphicsState::SetCurrentGroup(Kernel::NonCounted<GroupObject> group)
{
    currentGroup = group.Get();
}

void GraphicsState::AddObject(Counted<Object> object)
{
    if (Budget::Spend(Limits::c_objectUnits)) currentGroup->Add(std::move(object));
}

Counted<Object> GraphicsState::GetPreviousObject() const
{
    Object* object = currentGroup.Get();
    unsigned long long depth = 0;
    while (object) {
        const GroupObject* group = object->AsGroup();
        if (!group || group->children.empty()) break;
        object = group->children.back().Get();
        ++depth;
    }
    // A page may nest deep and then ask a hundred thousand times.
    Budget::Spend(Limits::c_operatorUnits * depth);
    return object;
}

void GraphicsState::OnPop(const GraphicsState*)
{
    textHandler.FlushText();
    OnGraphicsStateChanging();
}

void GraphicsState::OnGraphicsStateChanging()
{
    textHandler.OnGraphicsStateChanging();
}

void GraphicsState::OnLineStyleChanging()
{
    OnGraphicsStateChanging();
    Budget::Spend(Limits::c_paintUnits);
    if (lineStyle->GetReferenceCount() >= 2) lineStyle = lineStyle->Clone();
}

void GraphicsState::SetLineWidth(double width)
{
    const double raised = width > c_smallestWidth ? width : c_smallestWidth;
    if (raised == lineStyle->width) return;
    OnLineStyleChanging();
    lineStyle->width = raised;
    ApplyLineDash();
}

void GraphicsState::SetLineCap(int cap)
{
    using Renderer::LineStyle;
    static constexpr std::array<int, 3> c_caps{LineStyle::CapButt, LineStyle::CapHalfCircle,
                                               LineStyle::CapProjectingSquare};
    OnLineStyleChanging();
    const bool isKnown = Check(cap >= 0 && cap <= 2, Error::General);
    lineStyle->cap = c_caps[isKnown ? static_cast<std::size_t>(cap) : 0];
}

void GraphicsState::SetLineJoin(int join)
{
    using Renderer::LineStyle;
    static constexpr std::array<int, 3> c_joins{LineStyle::JoinMitre, LineStyle::JoinRound, LineStyle::JoinBevel};
    OnLineStyleChanging();
    const bool isKnown = Check(join >= 0 && join <= 2, Error::General);
    lineStyle->join = c_joins[isKnown ? static_cast<std::size_t>(join) : 0];
}

void GraphicsState::SetMiterLimit(double limit)
{
    OnLineStyleChanging();
    lineStyle->mitreLimit = limit;
}

void GraphicsState::SetLineDash(const std::vector<double>& dash, double phase)
{
    if (dash == lineDash && phase == lineDashPhase) return;
    OnLineStyleChanging();
    lineDash = dash;
    lineDashPhase = phase;
    ApplyLineDash();
}

void GraphicsState::ApplyLineDash()
{
    if (lineDash.empty()) {
        lineStyle->dashKind = Renderer::LineStyle::DashSolid;
        return;
    }
    const double width = lineStyle->width;
    const double scale = std::abs(width) <= c_smallestDashWidth ? 1 : 1 / width;
    lineStyle->dashKind = Renderer::LineStyle::DashDashed;
    lineStyle->dashes.resize(lineDash.size());
    std::transform(lineDash.begin(), lineDash.end(), lineStyle->dashes.begin(),
                   [scale](double length) { return length * scale; });
    lineStyle->dashPhase = lineDashPhase * scale;
    lineStyle->isDashScaledToFit = false;
}

void GraphicsState::SetBlendMode(Renderer::FillBlendMode::BlendMode mode)
{
    if (mode == blendMode) return;
    OnGraphicsStateChanging();
    blendMode = mode;
}

void GraphicsState::SetSoftMask(Counted<const SoftMask> mask)
{
    softMask = std::move(mask);
}

void GraphicsState::SetColourSpace(bool isStroke, Counted<const ColourSpace> space)
{
    (isStroke ? strokeColourSpace : fillColourSpace) = std::move(space);
}

void GraphicsState::SetFillDescriptor(bool isStroke, Counted<Renderer::FillDescriptor> descriptor)
{
    OnGraphicsStateChanging();
    (isStroke ? strokeDescriptor : fillDescriptor) = std::move(descriptor);
}

void GraphicsState::SetAlpha(bool isStroke, double alpha)
{
    double& present = isStroke ? strokeAlpha : fillAlpha;
    if (alpha == present || !(alpha >= 0 && alpha <= 1)) return;
    OnGraphicsStateChanging();
    present = alpha;
}

void GraphicsState::SetTextValue(double& field, double value)
{
    if (field == value) return;
    OnGraphicsStateChanging();
    field = value;
}

void GraphicsState::SetLeading(double value)
{
    OnGraphicsStateChanging();
    leading = value;
}

void GraphicsState::SetCharSpace(double value)
{
    SetTextValue(charSpace, value);
}

void GraphicsState::SetWordSpace(double value)
{
    SetTextValue(wordSpace, value);
}

void GraphicsState::SetTextRise(double value)
{
    SetTextValue(textRise, value);
}

void GraphicsState::SetTextWidth(double value)
{
    SetTextValue(textWidth, value);
}

void GraphicsState::SetTextRenderMode(int mode)
{
    static constexpr std::array<int, 4> c_flags{2, 1, 3, 0};
    const int flags = c_flags[static_cast<std::size_t>(mode & 3)];
    const int isClip = (mode >> 2) & 1;
    if (isClip != isTextClip) textHandler.FlushText();
    if (flags != renderFlags) OnGraphicsStateChanging();
    isTextClip = isClip;
    renderFlags = flags;
}

} // namespace Quillet
