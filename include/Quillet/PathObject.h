#pragma once

#include <Quillet/Object.h>

#include <Geometry/CurveNode.h>
#include <Renderer/FillBlendMode.h>
#include <Renderer/FillDescriptor.h>
#include <Renderer/LineStyleDescriptor.h>

#include <optional>
#include <utility>
#include <vector>

namespace Quillet {

/// A shape with a fill, a stroke or both.
///
/// The path stands upright around its own centre; a rotation, or the flip from a y axis that points upward, is in the
/// transform. So a rotated rectangle is a plain rectangle with a rotation, as the user of a drawing program made it.
class QUILLET_API PathObject : public Object
{
public:
    /// In the object's own space, and nobody else's: it may be changed in place.
    Kernel::Counted<Geometry::PolyCurveDbl> path;
    Geometry::WindingOrderMode winding = Geometry::WindingOrderMode::NonZero;
    /// Null means no fill.
    Kernel::Counted<Renderer::FillDescriptor> brushDescriptor;
    /// Null means no stroke.
    Kernel::Counted<Renderer::FillDescriptor> penDescriptor;
    Kernel::Counted<Renderer::LineStyleDescriptor> lineStyleDescriptor;
    Renderer::FillBlendMode::BlendMode blendMode{};
    /// Of the object as a whole, from 0 to 1, beside what its paints have.
    double opacity = 1.0;
    /// What the path is, if it is one curve, within 1/16 point on the page.
    bool isRectangle = false;
    bool isEllipse = false;
    bool isStraightLine = false;

    /// Without a shape and paints so far. Takes an id from `page`, which may be null.
    explicit PathObject(Kernel::NonCounted<const Page> page);
    /// A filled rectangle in page space.
    PathObject(const Kernel::Counted<const Page>& page, const Rect& rect,
               Kernel::Counted<Renderer::FillDescriptor> brush);
    ~PathObject() override;
    PathObject(const PathObject&) = delete;

    bool PreciseIsContainedIn(const Rect& rect, double tolerance) const override;
    bool PreciseOverlaps(const Rect& rect, double tolerance) const override;
    /// The box around the outlines, with their strokes, in page space; nothing without a path.
    std::optional<Rect> GetPreciseBox() const;
    void Clear() override;
    /// The box includes the stroke and, on curves, may be larger than what is seen.
    void UpdateBBox() override;

    /// Takes a copy of `newPath`, in the object's own space, and turns it upright; the transform, and the paints with
    /// it, take the opposite turn, so that everything stays where it is on the page. A path that needs no turn is
    /// flipped top to bottom, unless `keepOrientation`. Works out the shape flags and the boxes.
    void SetPath(const Kernel::Counted<const Geometry::PolyCurveDbl>& newPath, Geometry::WindingOrderMode mode,
                 bool keepOrientation);
    /// Cosine and sine of the turn that makes a path with this box stand upright; (1, 0) for none. A polygon found to
    /// stand for an ellipse sets `isEllipse`.
    std::pair<double, double> GuessRotation(const Kernel::Counted<const Geometry::PolyCurveDbl>& newPath,
                                            const Rect& box);
    /// With d the unit vector from node `i` to node `j`: (-d.y, d.x), or (0, 1) if the nodes coincide.
    std::pair<double, double> GuessRotation(const std::vector<Geometry::CurveNode>& nodes, int i, int j) const;

    /// These three never give null.
    Kernel::Counted<Renderer::FillDescriptor> GetBrushDescriptor() const;
    Kernel::Counted<Renderer::FillDescriptor> GetPenDescriptor() const;
    Kernel::Counted<Renderer::LineStyleDescriptor> GetLineStyleDescriptor() const;

    /// Whether no curve is open.
    bool IsClosed() const;
    bool IsFilled() const;
    /// Whether the fill is one colour.
    bool IsSolidFilled() const;
    bool IsStroked() const;
    /// The rectangle or the line's diagonal, in own space; of another shape, the box of its nodes.
    Rect GetAsRectangle() const;
    /// Whether the nodes of `a` are those of `b` moved by `pathTransform`, within 0.001.
    bool IsCompatiblePath(const Kernel::Counted<Geometry::PolyCurveDbl>& a,
                          const Kernel::Counted<Geometry::PolyCurveDbl>& b, const Params& pathTransform) const;
    /// Makes one object of this one and the next one above it, if one fills and the other strokes the same shape:
    /// takes the other's paint and answers true, and `other` can go. Boxes stay as they were. False changes nothing.
    bool TryCombineFillStroke(const Kernel::Counted<const PathObject>& other);

private:
    void UpdateShapeFlags();
};

} // namespace Quillet
