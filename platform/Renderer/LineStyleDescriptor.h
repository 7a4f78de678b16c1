#pragma once

#include <Geometry/PolyCurveDbl.h>
#include <Kernel/Counted.h>
#include <Kernel/Export.h>
#include <Kernel/NonCounted.h>
#include <Kernel/RectT.h>
#include <Renderer/FillDescriptor.h>
#include <Renderer/LineStyle.h>
#include <Geometry/AffineTransform.h>

#include <cstddef>

namespace Renderer {

/// A line style as an object uses it. The width is in points of the page, whatever the object's transform: a scaled
/// object keeps the line that was measured for it.
class QUILLET_API LineStyleDescriptor : public Kernel::Countable
{
public:
    /// Null draws no line.
    Kernel::Consolidated<LineStyle> lineStyle;
    /// The fill covers the inner half of the stroke. Set it on a clone: descriptors are shared.
    bool isBehindFill = false;

    explicit LineStyleDescriptor(Kernel::Consolidated<LineStyle> style, bool behindFill = false);

    Kernel::Counted<LineStyleDescriptor> Clone() const { return Kernel::MakeCounted<LineStyleDescriptor>(*this); }

    /// The descriptor that draws no line; always the same object.
    static Kernel::Counted<LineStyleDescriptor> CreateNone();

    /// The style draws a line of some width, and `pen` paints it. A null pen paints nothing.
    bool IsLineStyleVisible(Kernel::NonCounted<const FillDescriptor> pen) const;
    /// The same, false for a null style.
    static bool IsLineStyleVisible(Kernel::NonCounted<const LineStyleDescriptor> style,
                                   Kernel::NonCounted<const FillDescriptor> pen);

    /// How far, in points of the page, the stroke may reach beyond its path on every side: half the width, and the
    /// corner of a projecting cap if there are line ends. Dashes have ends on closed curves too. Mitres reach farther,
    /// each at its own corner only.
    double GetReach(bool hasOpenCurves) const;

    /// A box around `path`, in its space, made to hold the stroke too.
    ///
    /// `transform` takes `rect` and `path` to the page, where the stroke has its width; `resultTransform` takes the
    /// space of the result to the page, and an object that asks for its own box gives its transform for both. Each axis
    /// grows by what the reach measures along it, so a stroke on an object that is scaled down grows its box by more;
    /// then the box takes in the tips of the mitres. The empty rectangle stays empty.
    Kernel::RectT<double> InflateBaseRect(const Kernel::RectT<double>& rect,
                                          const Raster::AffineTransform::Params& transform,
                                          const Raster::AffineTransform::Params& resultTransform,
                                          const Geometry::PolyCurveDbl& path) const;

    /// A box in page space around `curve`, which `transform` takes there, grown by the reach on every side and to the
    /// tips of the mitres. The empty rectangle stays empty.
    Kernel::RectT<double> InflateSpreadRect(const Kernel::RectT<double>& rect,
                                            const Raster::AffineTransform::Params& transform,
                                            const Geometry::CurveDbl& curve) const;

    bool IsEqual(const LineStyleDescriptor& other) const;
    std::size_t GetHash() const;

private:
    bool HasMitres() const;
};

} // namespace Renderer
