#include <Quillet/GroupObject.h>
#include <Quillet/Object.h>
#include <Quillet/Page.h>
#include <Quillet/PdfDocument.h>

#include "objects/SoftMask.h"

#include <algorithm>
#include <utility>

namespace Quillet {

namespace {

/// Within this, coefficients of transforms and coordinates of clips are the same.
constexpr double c_equalityTolerance = 1e-6;

using Clip = Kernel::Counted<const Geometry::PolyCurveDbl>;

bool HasSameCurves(const Clip& a, const Clip& b)
{
    return a == b || (a && b && a->curves == b->curves);
}

bool HasEqualCurves(const Clip& a, const Clip& b)
{
    return a == b || (a && b && a->IsEqual(*b, c_equalityTolerance));
}

bool DoIntervalsOverlap(double a0, double a1, double b0, double b1)
{
    return std::max(std::min(a0, a1), std::min(b0, b1)) < std::min(std::max(a0, a1), std::max(b0, b1));
}

} // namespace

Object::Object(Kind newKind) : kind(newKind) {}

Object::Object(const Object& other)
    : Countable(other), bbox(other.bbox), transformedBBox(other.transformedBBox), transform(other.transform),
      clipPath(other.clipPath), clipWinding(other.clipWinding), kind(other.kind)
{}

Object::~Object() = default;

bool Object::PreciseIsContainedIn(const Rect& rect, double tolerance) const
{
    return IsContainedIn(rect, tolerance);
}

bool Object::PreciseOverlaps(const Rect& rect, double tolerance) const
{
    return Overlaps(rect, tolerance);
}

bool Object::HasText() const
{
    return false;
}

bool Object::IsPreserve() const
{
    return false;
}

Kernel::NonCounted<const Page> Object::GetPage() const
{
    // Only groups know a page, so the objects between need not be asked: no recursion, however deep the tree.
    for (const Object* above = parent.Get(); above; above = above->parent.Get()) {
        const GroupObject* group = above->AsGroup();
        if (group && group->page) return group->page;
    }
    return nullptr;
}

void Object::Clear()
{
    clipPath = nullptr;
}

void Object::SetTransform(const Params& newTransform)
{
    transform = newTransform;
    transformedBBox = transform.ApplyTo(bbox);
}

void Object::SetBBox(const Rect& box)
{
    bbox = clipPath ? box.Intersection(clipPath->GetApproxBBox()) : box;
    transformedBBox = transform.ApplyTo(bbox);
}

void Object::SetClipPath(Clip path, Geometry::WindingOrderMode winding)
{
    clipPath = std::move(path);
    clipWinding = winding;
    if (clipPath) bbox = bbox.Intersection(clipPath->GetApproxBBox());
}

void Object::ClearClipPath()
{
    clipPath = nullptr;
}

void Object::SetSoftMask(Kernel::Counted<const SoftMask> mask)
{
    softMask = std::move(mask);
}

Kernel::NonCounted<Object> Object::GetRoot()
{
    Object* top = this;
    while (top->parent)
        top = top->parent.Get();
    return top;
}

Kernel::NonCounted<const Object> Object::GetRoot() const
{
    return const_cast<Object*>(this)->GetRoot();
}

Kernel::NonCounted<PdfDocument> Object::GetDocument() const
{
    const Kernel::NonCounted<const Page> page = GetPage();
    return page ? page->ref.document : nullptr;
}

int Object::GetPageIndex() const
{
    const Kernel::NonCounted<PdfDocument> document = GetDocument();
    return document ? document->GetPageIndex(GetPage()) : -1;
}

TextFidelity Object::GetTextFidelity() const
{
    const Kernel::NonCounted<PdfDocument> document = GetDocument();
    return document ? document->GetTextFidelity() : TextFidelityExact;
}

bool Object::IsGroupTextLines() const
{
    const Kernel::NonCounted<PdfDocument> document = GetDocument();
    return document ? document->IsGroupTextLines() : true;
}

bool Object::IsContainedIn(const Rect& rect, double tolerance) const
{
    return rect.Inflated(tolerance).Contains(transformedBBox);
}

bool Object::Overlaps(const Rect& rect, double tolerance) const
{
    const Rect wide = rect.Inflated(tolerance);
    const Rect& box = transformedBBox;
    return box.GetWidth() != 0 && box.GetHeight() != 0 &&
           DoIntervalsOverlap(box.left, box.right, wide.left, wide.right) &&
           DoIntervalsOverlap(box.top, box.bottom, wide.top, wide.bottom);
}

bool Object::HasSameClip(Kernel::NonCounted<const Object> other) const
{
    return HasSameCurves(clipPath, other->clipPath) && clipWinding == other->clipWinding &&
           transform.IsEqual(other->transform, c_equalityTolerance);
}

bool Object::HasCompatibleAttributes(const Kernel::Counted<const Object>& other) const
{
    return transform.IsEqual(other->transform, c_equalityTolerance) && softMask == other->softMask &&
           HasEqualCurves(clipPath, other->clipPath) && (!clipPath || clipWinding == other->clipWinding);
}

} // namespace Quillet
