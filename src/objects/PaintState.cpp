#include "objects/PaintState.h"

#include "document/Limits.h"
#include "objects/SoftMask.h"

#include <Quillet/Budget.h>

#include <Renderer/Fill.h>
#include <Renderer/FillDescriptor.h>
#include <Renderer/LineStyle.h>
#include <Renderer/LineStyleDescriptor.h>

#include <cmath>
#include <utility>

namespace Quillet {

namespace {

/// The thinnest line that a device can draw is asked for with a width of 0; on paper this is one.
constexpr double c_hairline = 0.1;
constexpr double c_invisibleWidth = 0.001;
constexpr double c_sameTransform = 1e-6;

} // namespace

PaintState::PaintState() : lineStyle(Kernel::MakeCounted<Renderer::LineStyle>())
{
    lineStyle->join = Renderer::LineStyle::JoinMitre;
    lineStyle->dashKind = Renderer::LineStyle::DashSolid;
    lineStyle->width = 1;
    lineStyle->mitreLimit = 10;
}

PaintState::PaintState(const PaintState& other) = default;
PaintState::PaintState(PaintState&& other) noexcept = default;
PaintState::~PaintState() = default;

bool PaintState::FillRequiresOpacity(bool isStroke) const
{
    const Kernel::Consolidated<Renderer::Fill>& fill = GetFillDescriptor(isStroke)->fill;
    return fill && fill->GetKind() == Renderer::Fill::Kind::Bitmap;
}

Kernel::Counted<Renderer::FillDescriptor> PaintState::MakeFillDescriptorWithAlpha(bool isStroke, double alpha,
                                                                                  const Params& transform) const
{
    using Renderer::FillDescriptor;
    Kernel::Counted<FillDescriptor> descriptor = GetFillDescriptor(isStroke);
    if (descriptor->hasTransform && !transform.IsIdentity(c_sameTransform)) {
        descriptor = Kernel::MakeCounted<FillDescriptor>(*descriptor, transform);
    }
    if (descriptor->IsEmpty() || (alpha == 1 && descriptor->fill->IsOpaque())) return descriptor;
    Kernel::Consolidated<Renderer::Fill> fill = descriptor->fill->MakeWithAlpha(alpha);
    if (fill == descriptor->fill) return descriptor;
    return Kernel::MakeCounted<FillDescriptor>(std::move(fill), descriptor->hasTransform, descriptor->transform,
                                               descriptor->blendMode, descriptor->isScaledWithObject);
}

Kernel::Counted<Renderer::LineStyleDescriptor> PaintState::MakeLineStyleDescriptor(const Params& transform) const
{
    Budget::Spend(2 * Limits::c_paintUnits + lineDash.size() * sizeof(double));
    const double across = transform.a + transform.c;
    const double along = transform.b + transform.d;
    Kernel::Counted<Renderer::LineStyle> style = lineStyle->Clone();
    if (style->dashKind == Renderer::LineStyle::DashNone) style->width = 0;
    style->width *= std::sqrt((across * across + along * along) / 2);
    if (!(style->width >= c_invisibleWidth)) style->width = c_hairline;
    return Kernel::MakeCounted<Renderer::LineStyleDescriptor>(Kernel::ConsolidateObjectSacrifice(std::move(style)));
}

} // namespace Quillet
