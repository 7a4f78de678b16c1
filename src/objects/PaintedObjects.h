#pragma once

#include <Quillet/BitmapObject.h>
#include <Quillet/Fill.h>
#include <Quillet/PathObject.h>

namespace Quillet {

class PaintState;

/// A path painted with a graphics state, which gives paints, line style, alphas, blend mode and soft mask; `path` is in
/// the state's user space. Without a page, the object has no id.
QUILLET_API Kernel::Counted<PathObject> MakePathObject(Kernel::NonCounted<const Page> page, const PaintState& state,
                                                       const Kernel::Counted<const Geometry::PolyCurveDbl>& path,
                                                       Fill::Type type, Geometry::WindingOrderMode winding);

/// What a bitmap is painted for. The state's soft mask does not apply to the picture of a mask.
enum class BitmapContext : unsigned char { Page, Mask };

/// Places a bitmap on the unit square of the state's user space, with the state's blend mode, fill alpha and soft mask.
/// Without a page, the object has no id; without pixels, it has no extent.
QUILLET_API Kernel::Counted<BitmapObject> MakeBitmapObject(Kernel::NonCounted<const Page> page, const PaintState& state,
                                                           Kernel::Counted<const Raster::DynamicBitmap> bitmap,
                                                           BitmapContext context);

} // namespace Quillet
