#pragma once

#include <Quillet/Object.h>

#include <Renderer/FillBlendMode.h>

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace Quillet {

class ColumnObject;
class PathObject;
class TextLineObject;

/// Objects that share a clip, an opacity, a form or a layer.
///
/// A group's own space is page space. Nothing keeps its boxes up to date while a page is built: `UpdateBBoxes` does,
/// once. Its operations handle trees of any depth without recursion.
class QUILLET_API GroupObject : public Object
{
public:
    using Children = std::vector<Kernel::Counted<Object>>;

    /// In paint order, the lowest first. What is put in here by hand needs its `parent` set.
    Children children;
    double opacity = 1.0;
    bool isIsolated = false;
    bool isKnockout = false;
    /// The group comes from a form.
    bool isXObject = false;
    Renderer::FillBlendMode::BlendMode blendMode{};
    Kernel::Counted<const Page> page;
    /// A layer's name; empty for other groups.
    std::string name;

    /// Takes an id from `newPage`; without a page, the group has none.
    explicit GroupObject(Kernel::Counted<const Page> newPage);
    /// A group clipped to a copy of `path`, moved to page space by `pathTransform`.
    GroupObject(Kernel::Counted<const Page> newPage, const Geometry::PolyCurveDbl& path,
                Geometry::WindingOrderMode winding, const Params& pathTransform);
    /// Children that live on have no parent.
    ~GroupObject() override;
    GroupObject(const GroupObject&) = delete;

    /// Whether each object below, groups aside, does; true if there is none. Clips of groups play no part.
    bool PreciseIsContainedIn(const Rect& rect, double tolerance) const override;
    /// Whether some object below, groups aside, does. Clips of groups play no part.
    bool PreciseOverlaps(const Rect& rect, double tolerance) const override;
    bool HasText() const override;
    /// Whether the group says more than its children do: a name, a transparency group's attributes, or the grouping of
    /// a form of several objects.
    bool IsPreserve() const override;
    /// `IsPreserve`, if the group had so many children.
    bool IsPreserveWith(std::size_t childCount) const;
    Kernel::NonCounted<const Page> GetPage() const override;
    void Clear() override;
    /// The boxes of the children, which are up to date, as cut by the clip. Children without width or height are left
    /// out.
    void UpdateBBox() override;
    bool IsLayer() const { return GetKind() == Kind::Layer; }

    /// A group without children that is painted and clipped as this one.
    Kernel::Counted<GroupObject> MakeTwin() const;

    void SetName(std::string newName) { name = std::move(newName); }
    void SetOpacity(double newOpacity) { opacity = newOpacity; }
    void SetIsIsolated(bool isolated) { isIsolated = isolated; }
    void SetIsKnockout(bool knockout) { isKnockout = knockout; }
    void SetIsXObject(bool xObject) { isXObject = xObject; }
    void SetBlendMode(Renderer::FillBlendMode::BlendMode mode) { blendMode = mode; }

    /// Appends `object`, which has no parent yet.
    void Add(Kernel::Counted<Object> object);
    /// Inserts before `position`; the answer is where `object` is now.
    Children::iterator Insert(Children::const_iterator position, Kernel::Counted<Object> object);
    /// Inserts copies of [first, last), which are not children of this group, before `position`; the answer is where
    /// the first of them is now.
    Children::iterator Insert(Children::const_iterator position, Children::const_iterator first,
                              Children::const_iterator last);
    /// Moves the children of `other`, another group, from `first` on to the end of this one.
    void AcquireContent(const Kernel::Counted<GroupObject>& other, Children::const_iterator first);
    /// Moves what was added to the tree of `previous` after it into this group, which is outside that tree.
    ///
    /// `previous` is what was then the last object: a leaf, or an empty group. What goes is cut where `previous` and
    /// the newest object part, and whole groups go, with their clips. Returns the group out of which the content was
    /// taken, even if there was none; null if the cut would take what was there before, or if there is no group to take
    /// from. The cost is that of the depth of `previous` and of the objects moved.
    Kernel::Counted<GroupObject> AcquireMarkedContent(const Kernel::Counted<Object>& previous);

    /// An object is not its own ancestor.
    bool IsAncestorOf(Kernel::NonCounted<const Object> object) const;
    /// Whether the group is painted as a whole: by opacity, blend mode or soft mask, isolated or as a knockout.
    bool IsTransparencyGroup() const;

    /// `UpdateBBox` on this group and all groups below, bottom up.
    void UpdateBBoxes();
    /// Calls `visitor` on all groups below in order, children before their parent, and on this group last. It may
    /// change the group that it is handed and what is below; the walk has been there.
    void VisitSubGroups(const std::function<void(GroupObject*)>& visitor);

    /// Makes of the tree as it was built, of which this is the root, one that people can edit: takes out what cannot be
    /// seen, groups and clips that do nothing, and puts together what belongs together, text above all. Once, after
    /// `Page::BuildObjects`; `pageRect` is the page in page space. The abort flag is not tested.
    void Reduce(const Rect& pageRect);

    // The passes of `Reduce` that look at one group, whose groups below have been there. Boxes are up to date before
    // the first.

    void ReduceGradient();
    void ConvertClippedRectangles();
    void RemoveEmptyGroups();
    void CombineAdjacentLayers();
    void ExtendClippingGroups();
    void CombineFillStroke();
    void ConvertTextDecorations();
    void ReorderText();
    void CombineTextLines();
    void IsolateAdjacentColumns();
    void MergeAdjacentColumns();
    void SetParagraphs();
    void AvoidTooManyChildren();
    /// On the root only: takes a line at the top and one at the bottom of the page out of the columns they stand in.
    void IsolateHeadersFooters();
    /// On the root only: what is painted last, outside the trim box, becomes a layer.
    void IsolateTrim();
    /// All that a stack of strips or ellipses, found to be a gradient, needs to become one object, with the clips and
    /// groups around it.
    void ReduceGradients(const Rect& pageRect);

    bool CanCombineLayer(const GroupObject& other) const;
    bool TryTextDecoration(const PathObject& path);

protected:
    GroupObject(Kind newKind, Kernel::Counted<const Page> newPage);

private:
    void ReleaseChildren() noexcept;
};

GroupObject* Object::AsGroup()
{
    return kind == Kind::Group || kind == Kind::Layer ? static_cast<GroupObject*>(this) : nullptr;
}

const GroupObject* Object::AsGroup() const
{
    return const_cast<Object*>(this)->AsGroup();
}

} // namespace Quillet
