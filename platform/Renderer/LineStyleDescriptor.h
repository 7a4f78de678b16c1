#pragma once

#include <Kernel/Counted.h>
#include <Kernel/Export.h>
#include <Kernel/NonCounted.h>
#include <Kernel/RectT.h>
#include <Renderer/FillDescriptor.h>
#include <Renderer/LineStyle.h>
#include <pixels/AffineTransform.h>

#include <cstddef>
#include <vector>

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

    /// How far, in points of the page, the stroke may reach beyond its path: half the width, the tip of the longest
    /// mitre for mitred joins, and the corner of a projecting cap if there are line ends. Dashes have ends on closed
    /// curves too. It is an upper bound that looks at the style alone: a path without corners reaches less far.
    double GetReach(bool hasOpenCurves) const;

    /// A box around a path, in the space of the path, made to hold the stroke too.
    ///
    /// `transform` takes `rect` to the page, where the stroke has its width; `resultTransform` takes the space of the
    /// result to the page, and an object that asks for its own box gives its transform for both. Each axis grows by
    /// what the reach measures along it, so a stroke on an object that is scaled down grows its box by more.
    /// `areClosed` says for each curve whether it is closed. The empty rectangle stays empty.
    Kernel::RectT<double> InflateBaseRect(const Kernel::RectT<double>& rect,
                                          const Raster::AffineTransform::Params& transform,
                                          const Raster::AffineTransform::Params& resultTransform,
                                          const std::vector<bool>& areClosed) const;

    /// A box in page space, grown by the reach on every side. The empty rectangle stays empty.
    Kernel::RectT<double> InflateSpreadRect(const Kernel::RectT<double>& rect,
                                            const std::vector<bool>& areClosed) const;
    /// The same for a single curve.
    Kernel::RectT<double> InflateSpreadRect(const Kernel::RectT<double>& rect, bool isClosed) const;

    bool IsEqual(const LineStyleDescriptor& other) const;
    std::size_t GetHash() const;
};

} // namespace Renderer
