#pragma once

#include <Geometry/CurveDbl.h>

#include <utility>
#include <vector>

namespace Geometry {

/// A path of any number of curves.
///
/// Curves are shared by copies of the path, which is what tells clips of one origin from clips that only look alike;
/// `Clone` is the way to curves of one's own. No curve is null.
class QUILLET_API PolyCurveDbl : public Kernel::Countable
{
public:
    using Rect = Kernel::RectT<double>;

    std::vector<Kernel::Counted<CurveDbl>> curves;

    PolyCurveDbl() = default;
    explicit PolyCurveDbl(const Rect& rect) { AddRectangle(rect); }

    /// Null adds nothing.
    void AddCurve(Kernel::Counted<CurveDbl> curve);

    /// One more curve, closed.
    void AddRectangle(const Rect& rect);

    bool IsEmpty() const { return curves.empty(); }
    auto begin() const { return curves.begin(); }
    auto end() const { return curves.end(); }

    /// Whether the path is one curve that `CurveDbl::IsRectangle`.
    bool IsRectangle(double tolerance) const;

    /// Whether both have equally many curves, each equal within `tolerance`.
    bool IsEqual(const PolyCurveDbl& other, double tolerance) const;

    /// Whether no curve is open; true without curves.
    bool GetAllCurvesClosed() const;

    /// The closed flag of each curve.
    std::vector<bool> EnumerateCurvesClosed() const;

    /// The box around those of the curves. Curves without a finite node are left out; if none is left, the rectangle
    /// of zeros.
    Rect GetApproxBBox() const;
    Rect GetExactBBox() const;
    Rect GetExactBBox(const Raster::AffineTransform::Params& transform) const;

    /// Changes the curves in place, for all who share them.
    void Transform(const Raster::AffineTransform::Params& transform);

    /// A path with copies of the curves.
    Kernel::Counted<PolyCurveDbl> Clone() const;
};

} // namespace Geometry
