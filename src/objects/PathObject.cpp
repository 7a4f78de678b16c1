#include <Quillet/Page.h>
#include <Quillet/PathObject.h>

#include "objects/SoftMask.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Quillet {

namespace {

using Params = Object::Params;
using Rect = Object::Rect;
using Descriptor = Kernel::Counted<Renderer::FillDescriptor>;

/// A turn by less is none.
constexpr double c_rotationTolerance = 1e-6;
/// How far, in points of the page, a path may be off the shape that it is taken for.
constexpr double c_shapeTolerance = 0.0625;
constexpr double c_nodeTolerance = 0.001;
constexpr double c_smallestDeterminant = 1e-128;

/// A turn about `centre`.
Params MakeRotation(double cosine, double sine, Kernel::PointT<double> centre)
{
    const Params turn = Params::FromPdf(cosine, sine, -sine, cosine, 0, 0);
    return Params::Translation(centre.x, centre.y) * turn * Params::Translation(-centre.x, -centre.y);
}

Params MakeVerticalFlip(Kernel::PointT<double> centre)
{
    return Params::Translation(centre.x, centre.y) * Params::Scale(1, -1) * Params::Translation(-centre.x, -centre.y);
}

/// A paint that goes along with the path that it paints. One that looks the same wherever it is placed is shared.
Descriptor MakeMoved(const Descriptor& paint, const Params& movement)
{
    if (!paint || !paint->hasTransform) return paint;
    return Kernel::MakeCounted<Renderer::FillDescriptor>(*paint, movement);
}

/// `c_shapeTolerance` in the space that `transform` takes to the page.
double GetShapeTolerance(const Params& transform)
{
    const double determinant = transform.GetDeterminant();
    if (!(std::abs(determinant) > c_smallestDeterminant)) return 0;
    return c_shapeTolerance * std::hypot(transform.d - transform.c, transform.a - transform.b) / std::abs(determinant) /
           std::sqrt(2.0);
}

bool DoRangesMeet(double a0, double a1, double b0, double b1)
{
    return a0 < b1 && b0 < a1;
}

} // namespace

PathObject::PathObject(Kernel::NonCounted<const Page> page) : Object(Kind::Path)
{
    if (page) id = page->MakeObjectId();
}

PathObject::PathObject(const Kernel::Counted<const Page>& page, const Rect& rect, Descriptor brush)
    : Object(Kind::Path), path(Kernel::MakeCounted<Geometry::PolyCurveDbl>(rect)), brushDescriptor(std::move(brush)),
      isRectangle(true)
{
    if (page) id = page->MakeObjectId();
    SetBBox(rect);
}

PathObject::~PathObject() = default;

void PathObject::SetPath(const Kernel::Counted<const Geometry::PolyCurveDbl>& newPath, Geometry::WindingOrderMode mode,
                         bool keepOrientation)
{
    isRectangle = isEllipse = isStraightLine = false;
    winding = mode;

    const Rect box = newPath->GetApproxBBox();
    const auto [cosine, sine] = GuessRotation(newPath, box);
    const bool isTurned = std::abs(cosine - 1) > c_rotationTolerance || std::abs(sine) > c_rotationTolerance;
    path = newPath->Clone();
    if (isTurned || !keepOrientation) {
        const Params upright =
            isTurned ? MakeRotation(cosine, sine, box.GetCentre()) : MakeVerticalFlip(box.GetCentre());
        path->Transform(upright);
        transform = transform * upright.GetInverse();
        brushDescriptor = MakeMoved(brushDescriptor, upright);
        penDescriptor = MakeMoved(penDescriptor, upright);
    }
    UpdateShapeFlags();
    UpdateBBox();
}

void PathObject::UpdateShapeFlags()
{
    if (path->curves.size() != 1) return;
    const Geometry::CurveDbl& curve = *path->curves.front();
    const double tolerance = GetShapeTolerance(transform);
    isStraightLine = curve.IsStraightLine(tolerance);
    isRectangle = curve.IsRectangle(tolerance);
    isEllipse = isEllipse || curve.IsEllipse(tolerance, Geometry::CurveDbl::c_uprightOnly);
}

void PathObject::UpdateBBox()
{
    Rect box = path ? path->GetApproxBBox() : Rect{};
    if (path && IsStroked()) {
        box = lineStyleDescriptor->InflateBaseRect(box, transform, transform, *path);
    }
    SetBBox(box);
}

void PathObject::Clear()
{
    path = nullptr;
    brushDescriptor = nullptr;
    penDescriptor = nullptr;
    lineStyleDescriptor = nullptr;
    Object::Clear();
}

Descriptor PathObject::GetBrushDescriptor() const
{
    return brushDescriptor ? brushDescriptor : Renderer::FillDescriptor::CreateNone();
}

Descriptor PathObject::GetPenDescriptor() const
{
    return penDescriptor ? penDescriptor : Renderer::FillDescriptor::CreateNone();
}

Kernel::Counted<Renderer::LineStyleDescriptor> PathObject::GetLineStyleDescriptor() const
{
    return lineStyleDescriptor ? lineStyleDescriptor : Renderer::LineStyleDescriptor::CreateNone();
}

bool PathObject::IsClosed() const
{
    return path && path->GetAllCurvesClosed();
}

bool PathObject::IsFilled() const
{
    return brushDescriptor && !brushDescriptor->IsEmpty();
}

bool PathObject::IsSolidFilled() const
{
    return IsFilled() && brushDescriptor->fill->GetKind() == Renderer::Fill::Kind::Solid;
}

bool PathObject::IsStroked() const
{
    return lineStyleDescriptor && penDescriptor && lineStyleDescriptor->IsLineStyleVisible(penDescriptor);
}

Rect PathObject::GetAsRectangle() const
{
    if (!path) return {};
    if (!isRectangle && !isStraightLine) return path->GetApproxBBox();
    const std::vector<Geometry::CurveNode>& nodes = path->curves.front()->nodes;
    return Rect::FromCorners(nodes[0].point, nodes[isRectangle ? 6 : 3].point);
}

std::optional<Rect> PathObject::GetPreciseBox() const
{
    std::optional<Rect> box;
    if (!path) return box;
    const bool isStroked = IsStroked();
    for (const Kernel::Counted<Geometry::CurveDbl>& curve : *path) {
        Rect own = curve->GetExactBBox(transform);
        if (isStroked) own = lineStyleDescriptor->InflateSpreadRect(own, transform, *curve);
        box = box ? box->Union(own) : own;
    }
    return box;
}

bool PathObject::PreciseIsContainedIn(const Rect& rect, double tolerance) const
{
    if (IsContainedIn(rect, tolerance)) return true;
    const std::optional<Rect> box = GetPreciseBox();
    return !box || rect.Inflated(tolerance).Contains(*box);
}

bool PathObject::PreciseOverlaps(const Rect& rect, double tolerance) const
{
    if (!path) return false;
    const bool isStroked = IsStroked();
    const Rect wide = rect.Inflated(tolerance);
    return std::any_of(path->begin(), path->end(), [&](const Kernel::Counted<Geometry::CurveDbl>& curve) {
        Rect box = curve->GetExactBBox(transform);
        // Its stroke gives a level or upright line an area.
        if (isStroked) box = lineStyleDescriptor->InflateSpreadRect(box, transform, *curve);
        const bool hasArea = isStroked || (box.GetWidth() != 0 && box.GetHeight() != 0);
        return hasArea && DoRangesMeet(box.left, box.right, wide.left, wide.right) &&
               DoRangesMeet(box.top, box.bottom, wide.top, wide.bottom);
    });
}

bool PathObject::IsCompatiblePath(const Kernel::Counted<Geometry::PolyCurveDbl>& a,
                                  const Kernel::Counted<Geometry::PolyCurveDbl>& b, const Params& pathTransform) const
{
    const auto isSameNode = [&](const Geometry::CurveNode& nodeA, const Geometry::CurveNode& nodeB) {
        return nodeA.IsEqual({pathTransform.ApplyTo(nodeB.point), nodeB.style}, c_nodeTolerance);
    };
    const auto isSameCurve = [&](const Kernel::Counted<Geometry::CurveDbl>& curveA,
                                 const Kernel::Counted<Geometry::CurveDbl>& curveB) {
        return std::equal(curveA->nodes.begin(), curveA->nodes.end(), curveB->nodes.begin(), curveB->nodes.end(),
                          isSameNode);
    };
    return a && b && std::equal(a->begin(), a->end(), b->begin(), b->end(), isSameCurve);
}

bool PathObject::TryCombineFillStroke(const Kernel::Counted<const PathObject>& other)
{
    const bool isStrokeOverFill = IsFilled() && other->IsStroked() && !IsStroked() && !other->IsFilled();
    const bool isFillOverStroke = IsStroked() && other->IsFilled() && !IsFilled() && !other->IsStroked();
    if (!isStrokeOverFill && !isFillOverStroke) return false;
    if (blendMode != Renderer::FillBlendMode::Normal || other->blendMode != Renderer::FillBlendMode::Normal ||
        softMask != other->softMask || ((clipPath || other->clipPath) && !HasCompatibleAttributes(other)) ||
        !IsCompatiblePath(path, other->path, transform.GetInverse() * other->transform)) {
        return false;
    }

    if (isStrokeOverFill) {
        penDescriptor = other->penDescriptor;
        lineStyleDescriptor = other->lineStyleDescriptor;
        for (std::size_t i = 0; i < path->curves.size(); ++i) {
            path->curves[i]->SetClosed(other->path->curves[i]->IsClosed());
        }
        return true;
    }
    brushDescriptor = other->brushDescriptor;
    winding = other->winding;
    lineStyleDescriptor = lineStyleDescriptor->Clone();
    lineStyleDescriptor->isBehindFill = true;
    return true;
}

} // namespace Quillet
