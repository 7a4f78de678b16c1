#pragma once

#include <Quillet/Fill.h>

#include "content/PdfSubPath.h"

#include <Geometry/PolyCurveDbl.h>

#include <Kernel/Counted.h>

#include <cstddef>
#include <vector>

namespace Quillet {

/// The path under construction, in user space.
class QUILLET_API PdfPath
{
public:
    /// A last subpath of at most one point is reused, so that a run of moves leaves one subpath.
    PdfSubPath& StartSubPath(double x, double y);
    /// False if there is no subpath.
    bool CloseBackSubPath();
    /// Forgets the subpaths and keeps their storage, points included.
    void Clear() { count = 0; }
    /// The subpath in use last; there must be one.
    PdfSubPath& GetBack() { return subPaths[count - 1]; }
    /// New curves for a fill, a stroke or both; null if nothing is left to draw, and for both together if a subpath is
    /// a single point, since that looks different filled and stroked.
    Kernel::Counted<Geometry::PolyCurveDbl> MakePath(Fill::Type type, bool isRoundCap) const;

    std::vector<PdfSubPath> subPaths;
    /// Subpaths in use; the rest is spare.
    std::size_t count = 0;
};

} // namespace Quillet
