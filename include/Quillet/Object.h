#pragma once

#include <Geometry/AffineTransform.h>
#include <Geometry/PolyCurveDbl.h>
#include <Geometry/WindingOrderMode.h>
#include <Kernel/Countable.h>
#include <Kernel/Counted.h>
#include <Kernel/Export.h>
#include <Kernel/NonCounted.h>
#include <Kernel/RectT.h>
#include <Quillet/TextFidelity.h>

namespace Quillet {

class GroupObject;
class Page;
class PdfDocument;
class SoftMask;

/// A node of the tree that stands for a page: a group, layer, path, bitmap or text.
///
/// Page space has its origin at the top left, y downward, in points. Each object has a space of its own and a transform
/// from there to page space; a group's is page space itself. A tree belongs to one thread at a time.
///
/// Trees may be very deep: a page may nest a clip in a clip 100,000 times. `WalkTree` walks them without recursion.
class QUILLET_API Object : public Kernel::Countable
{
public:
    using Params = Raster::AffineTransform::Params;
    using Rect = Kernel::RectT<double>;

    /// What an object is, one value for each class. Code that treats them apart switches over the kind and has no
    /// default, so that the compiler names each place that does not know a new one.
    enum class Kind : unsigned char { Group, Layer, Path, Bitmap, TextLine, Column };

    /// Unique in the document; -1 for an object without a page and for a copy.
    int id = -1;
    /// In the object's own space. Zeros for an object without extent.
    Rect bbox;
    /// The box around `bbox` in page space: what all geometry of the tree compares.
    Rect transformedBBox;
    /// Own space to page space.
    Params transform;
    /// Owned by nobody here: it is the parent that owns its children.
    Kernel::NonCounted<Object> parent;
    /// In the space of `bbox`. Shared: never change it in place.
    Kernel::Counted<const Geometry::PolyCurveDbl> clipPath;
    Geometry::WindingOrderMode clipWinding = Geometry::WindingOrderMode::NonZero;

    ~Object() override;
    Object& operator=(const Object&) = delete;

    Kind GetKind() const { return kind; }

    /// Whether the object lies in `rect`, in page space, widened by `tolerance` points on each side; by its outline
    /// where `IsContainedIn` goes by the box.
    virtual bool PreciseIsContainedIn(const Rect& rect, double tolerance) const;
    /// Whether the object covers some of `rect`, in page space, widened by `tolerance` points on each side; by its
    /// outline where `Overlaps` goes by the box.
    virtual bool PreciseOverlaps(const Rect& rect, double tolerance) const;
    virtual bool HasText() const;
    /// Whether the object must stay as a node of its own although it has no visible content.
    virtual bool IsPreserve() const;
    /// The page of the nearest group above that has one; null for an object outside any tree.
    virtual Kernel::NonCounted<const Page> GetPage() const;
    /// Frees the content. The object stays in the tree, without anything to show.
    virtual void Clear();
    /// Computes both boxes from the content.
    virtual void UpdateBBox() = 0;

    void SetId(int newId) { id = newId; }
    void SetTransform(const Params& newTransform);
    /// The box as cut by the clip's; one that the clip leaves out becomes zeros.
    void SetBBox(const Rect& box);
    void SetParent(Kernel::NonCounted<Object> newParent) { parent = newParent; }
    /// Cuts `bbox` by the clip's box. `transformedBBox` follows with the next `SetBBox` or `UpdateBBox`.
    void SetClipPath(Kernel::Counted<const Geometry::PolyCurveDbl> path, Geometry::WindingOrderMode winding);
    void ClearClipPath();
    /// Whether a soft mask shapes the object's opacity.
    bool HasSoftMask() const { return static_cast<bool>(softMask); }

    /// The topmost object above this one, which may be this one.
    Kernel::NonCounted<Object> GetRoot();
    Kernel::NonCounted<const Object> GetRoot() const;
    /// Null without a page.
    Kernel::NonCounted<PdfDocument> GetDocument() const;
    /// -1 without a page.
    int GetPageIndex() const;
    /// The document's setting; exact without a document.
    TextFidelity GetTextFidelity() const;
    /// The document's setting; true without a document.
    bool IsGroupTextLines() const;

    /// Whether `transformedBBox` lies in `rect` widened by `tolerance` on each side, edges included.
    bool IsContainedIn(const Rect& rect, double tolerance) const;
    /// Whether `transformedBBox`, which has an area, shares some with `rect` widened by `tolerance` on each side.
    /// Touching does not count. Corners of `rect` may be in any order.
    bool Overlaps(const Rect& rect, double tolerance) const;
    /// Whether both have the same curves, not merely equal ones, as clip, the same rule and the same transform; or both
    /// no clip.
    bool HasSameClip(Kernel::NonCounted<const Object> other) const;
    /// Whether both have equal transforms and clips and the same soft mask, so that they can become one object.
    bool HasCompatibleAttributes(const Kernel::Counted<const Object>& other) const;

    /// The group that this object is, a layer included, or null: as a dynamic cast would say, at the cost of a
    /// comparison. Defined in `GroupObject.h`.
    inline GroupObject* AsGroup();
    inline const GroupObject* AsGroup() const;

    // Not for hosts.

    void SetSoftMask(Kernel::Counted<const SoftMask> mask);
    const Kernel::Counted<const SoftMask>& GetSoftMask() const { return softMask; }

    Kernel::Counted<const SoftMask> softMask;

protected:
    explicit Object(Kind newKind);
    /// Kind, boxes, transform and clip are copied; the copy has no id, parent or soft mask.
    Object(const Object& other);

private:
    Kind kind;
};

} // namespace Quillet
