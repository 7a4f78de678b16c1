#include "objects/PaintedObjects.h"

#include "objects/PaintState.h"
#include "objects/SoftMask.h"

#include <Quillet/Page.h>

#include <Raster/DynamicBitmap.h>

#include <utility>

namespace Quillet {

namespace {

using Params = Object::Params;

/// A fill counts as no more opaque than the stroke up to this.
constexpr double c_alphaTolerance = 0.0001;

/// What the two alphas of a graphics state become: one for the object as a whole, one for each paint.
struct Alphas
{
    double object = 1;
    double fill;
    double stroke;
};

/// A bitmap fill has no alpha of its own, so the object takes it over. Else the object takes what fill and stroke have
/// in common, so that the stroke does not show the edge of the fill below it.
Alphas SplitAlphas(const PaintState& state, Fill::Type type)
{
    const double fill = state.fillAlpha;
    const double stroke = state.strokeAlpha;
    if ((type & Fill::Fill) && state.FillRequiresOpacity(false)) return {fill, 1, stroke};
    if ((type & Fill::Stroke) && state.FillRequiresOpacity(true)) return {stroke, fill, 1};
    if (type == Fill::FillAndStroke && stroke >= fill - c_alphaTolerance) return {stroke, fill / stroke, 1};
    return {1, fill, stroke};
}

} // namespace

Kernel::Counted<PathObject> MakePathObject(Kernel::NonCounted<const Page> page, const PaintState& state,
                                           const Kernel::Counted<const Geometry::PolyCurveDbl>& path, Fill::Type type,
                                           Geometry::WindingOrderMode winding)
{
    auto object = Kernel::MakeCounted<PathObject>(page);
    object->blendMode = state.blendMode;
    object->softMask = state.softMask;
    object->SetTransform(state.ltCurrent);

    const Alphas alphas = SplitAlphas(state, type);
    object->opacity = alphas.object;
    const Params userToOwn = object->transform.GetInverse() * state.ltCurrent;
    if (type & Fill::Fill) object->brushDescriptor = state.MakeFillDescriptorWithAlpha(false, alphas.fill, userToOwn);
    if (type & Fill::Stroke) {
        object->lineStyleDescriptor = state.MakeLineStyleDescriptor(state.ltCurrent);
        object->penDescriptor = state.MakeFillDescriptorWithAlpha(true, alphas.stroke, userToOwn);
    }
    object->SetPath(path, winding, false);
    return object;
}

Kernel::Counted<BitmapObject> MakeBitmapObject(Kernel::NonCounted<const Page> page, const PaintState& state,
                                               Kernel::Counted<const Raster::DynamicBitmap> bitmap,
                                               BitmapContext context)
{
    auto object = Kernel::MakeCounted<BitmapObject>(page);
    object->bitmap = std::move(bitmap);
    object->blendMode = state.blendMode;
    object->opacity = static_cast<float>(state.fillAlpha);
    if (context == BitmapContext::Page) object->softMask = state.softMask;

    object->transform = state.ltCurrent;
    const double width = object->bitmap ? object->bitmap->GetWidth() : 0;
    const double height = object->bitmap ? object->bitmap->GetHeight() : 0;
    if (width > 0 && height > 0) {
        object->transform = object->transform * Params::Translation(0, 1) * Params::Scale(1 / width, -1 / height);
    }
    object->UpdateBBox();
    return object;
}

} // namespace Quillet
