#include "document/Limits.h"
#include "objects/reduction/Reduce.h"

#include <Quillet/PathObject.h>
#include <Quillet/TreeWalk.h>

#include <cmath>
#include <optional>
#include <utility>

namespace Quillet::Reduction {

namespace {

constexpr double c_rectangleTolerance = 1e-6;
/// Points by which an outline may reach over a clip, or the edge of a clip stand off the page's.
constexpr double c_clipTolerance = 0.0625;

bool IsNear(const Rect& a, const Rect& b)
{
    return std::abs(a.left - b.left) <= c_clipTolerance && std::abs(a.top - b.top) <= c_clipTolerance &&
           std::abs(a.right - b.right) <= c_clipTolerance && std::abs(a.bottom - b.bottom) <= c_clipTolerance;
}

/// Whether some rectangle contains `box`; none does if a corner is no number.
bool IsContainable(const Rect& box)
{
    return box.left <= box.right && box.top <= box.bottom && !box.IsEmpty();
}

/// What a group holds, told by two boxes instead of by a walk for each clip above it.
///
/// An object is contained in a rectangle if its box or its precise box is, and as a rule one of them lies in the other:
/// then it is contained just if that one is. Where rounding, or a clip of its own, sets them across each other, only
/// bounds are known, and the object may have to be asked itself.
class Content
{
public:
    void Add(const Object& leaf)
    {
        ++leafCount;
        const Rect& box = leaf.transformedBBox;
        std::optional<Rect> precise = box;
        if (leaf.GetKind() == Object::Kind::Path) precise = static_cast<const PathObject&>(leaf).GetPreciseBox();
        if (!precise) return;
        const bool hasBox = IsContainable(box), hasPrecise = IsContainable(*precise);
        if (!hasBox && !hasPrecise) {
            isUncontainable = true;
        } else if (!hasPrecise || (hasBox && precise->Contains(box))) {
            AddBounds(box, box);
        } else if (!hasBox || box.Contains(*precise)) {
            AddBounds(*precise, *precise);
        } else {
            const Rect common{std::max(box.left, precise->left), std::max(box.top, precise->top),
                              std::min(box.right, precise->right), std::min(box.bottom, precise->bottom)};
            AddBounds(IsContainable(common) ? common : Rect::MakeEmpty(), box.Union(*precise));
        }
    }

    void Add(const Content& other)
    {
        leafCount += other.leafCount;
        isUncontainable = isUncontainable || other.isUncontainable;
        AddBounds(other.inner, other.outer);
    }

    unsigned long long GetLeafCount() const { return leafCount; }

    /// Nothing if the boxes do not tell.
    std::optional<bool> IsContainedIn(const Rect& rect) const
    {
        if (isUncontainable) return false;
        if (outer.IsEmpty() || rect.Contains(outer)) return true;
        if (!inner.IsEmpty() && !rect.Contains(inner)) return false;
        return std::nullopt;
    }

private:
    void AddBounds(const Rect& newInner, const Rect& newOuter)
    {
        inner = inner.Union(newInner);
        outer = outer.Union(newOuter);
    }

    unsigned long long leafCount = 0;
    bool isUncontainable = false;
    /// Every rectangle that contains all objects contains this.
    Rect inner = Rect::MakeEmpty();
    /// Every rectangle that contains this contains all objects.
    Rect outer = Rect::MakeEmpty();
};

/// Level: whether some group above may be rid of its clip, so that content counts.
class RedundantClipping : public TreePass<bool, GroupObject>
{
public:
    explicit RedundantClipping(const Rect& rect) : pageRect(rect) {}

    Step Enter(GroupObject& group, bool& isCounted) override
    {
        Clip clip;
        if (group.clipPath && group.clipPath->IsRectangle(c_rectangleTolerance)) {
            clip.box = group.clipPath->GetApproxBBox();
            clip.isPage = IsNear(*clip.box, pageRect);
            isCounted = isCounted || !clip.isPage;
        }
        clips.push_back(clip);
        return Step::On;
    }

    Step Visit(Object& leaf, const bool& isCounted) override
    {
        if (!isCounted) return Step::On;
        ++leafCount;
        clips.back().content.Add(leaf);
        return Step::On;
    }

    void Leave(GroupObject& group, const bool&) override
    {
        const Clip clip = std::move(clips.back());
        clips.pop_back();
        if (clip.box && (clip.isPage || IsContained(group, clip))) {
            group.ClearClipPath();
            group.UpdateBBox();
        }
        if (!clips.empty()) clips.back().content.Add(clip.content);
    }

private:
    struct Clip
    {
        /// Of a rectangle; nothing for other clips.
        std::optional<Rect> box;
        bool isPage = false;
        Content content;
    };

    bool IsContained(const GroupObject& group, const Clip& clip)
    {
        if (const auto known = clip.content.IsContainedIn(clip.box->Inflated(c_clipTolerance))) return *known;
        // A clip that stays although it cuts nothing does no harm.
        checkCount += clip.content.GetLeafCount();
        if (checkCount > Limits::c_maxOutlineChecks * leafCount) return false;
        return group.PreciseIsContainedIn(*clip.box, c_clipTolerance);
    }

    const Rect& pageRect;
    /// Of the groups that the walk is in, the innermost last.
    std::vector<Clip> clips;
    unsigned long long leafCount = 0;
    unsigned long long checkCount = 0;
};

} // namespace

void RemoveRedundantClipping(GroupObject& root, const Rect& pageRect)
{
    RedundantClipping pass(pageRect);
    WalkTree(root, pass);
}

} // namespace Quillet::Reduction
