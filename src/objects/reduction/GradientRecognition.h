#pragma once

#include <Quillet/GroupObject.h>
#include <Quillet/PathObject.h>

#include <Kernel/Export.h>
#include <Renderer/ColourPosition.h>
#include <Renderer/Gradient.h>

#include <optional>
#include <vector>

/// Gradients that a file gives as a stack of strips or ellipses, each of one colour, are found by geometry and colour
/// alone.
namespace Quillet::Reduction {

using Params = Object::Params;
using Rect = Object::Rect;

/// How the pieces of a gradient lie.
enum class GradientType : int {
    AlongX = 0,     ///< strips side by side, with one top and bottom
    AlongY = 1,     ///< strips one above the other, with one left and right
    Elliptical = 2, ///< ellipses around one centre
};

/// The object as a piece of a gradient: a path with an area, of one colour, without stroke, clip and soft mask; else
/// null.
const PathObject* ToGradientStrip(const Object& object);

/// A stack of at least 16 touching rectangles in one direction.
struct LinearGradient
{
    GradientType type;
    /// What the strips cover, in the space of the first child.
    Rect rect;
};
std::optional<LinearGradient> GetLinearGradient(const GroupObject& group);

/// A rectangle below at least 15 ellipses around one centre and of one shape.
bool IsEllipticalGradient(const GroupObject& group);

/// The colours at so many places in equal steps, at least 2, of a gradient that the children of a group make, all of
/// them strips: from its start to its end, or from the centre to the edge. Each is that of the topmost strip that
/// covers the place, or else of the one nearest to it. `rect` is in the space of the first child, of ellipses in that
/// of the second.
std::vector<Kernel::Consolidated<Renderer::Colour>> GetColours(const GroupObject& group, GradientType type,
                                                               const Rect& rect, int count);

/// The shortest row of the colours at 256 places that, within rounding of a byte, still has them all.
Kernel::Consolidated<Renderer::Gradient> MakeGradient(const GroupObject& group, GradientType type, const Rect& rect);

/// The fill, in page space, of what the children of the group show; null if they make no gradient.
Kernel::Counted<Renderer::FillDescriptor> MakeGradientFill(const GroupObject& group);

/// Whether the colour of `b` is what lies between those of `a` and `c` at its position. False for models other than
/// RGB, CMYK and Lab, and for colours of several models.
QUILLET_API bool IsInterpolate(const Renderer::ColourPosition& a, const Renderer::ColourPosition& b,
                               const Renderer::ColourPosition& c);

} // namespace Quillet::Reduction
