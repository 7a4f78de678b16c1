#include <Quillet/GroupObject.h>
#include <Quillet/PathObject.h>

namespace Quillet {

namespace {

/// Points by which a clip may reach over the edge of the rectangle that it cuts.
constexpr double c_edgeTolerance = 0.0005;

} // namespace

/// A rectangle that only shows through a clip is how many producers paint a shape: the clip is what people see.
void GroupObject::ConvertClippedRectangles()
{
    if (!clipPath || children.size() != 1 || children.front()->GetKind() != Kind::Path) return;
    auto& rectangle = static_cast<PathObject&>(*children.front());
    if (!rectangle.isRectangle || rectangle.IsStroked() || rectangle.clipPath) return;
    const Kernel::Counted<Geometry::PolyCurveDbl> shape = clipPath->Clone();
    shape->Transform(rectangle.transform.GetInverse());
    if (!rectangle.bbox.Inflated(c_edgeTolerance).Contains(shape->GetApproxBBox())) return;
    rectangle.SetPath(shape, clipWinding, true);
    ClearClipPath();
}

} // namespace Quillet
