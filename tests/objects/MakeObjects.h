#pragma once

#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>
#include <Quillet/PathObject.h>

#include "objects/SoftMask.h"

#include <Renderer/ColourRGB.h>
#include <Renderer/FillSolid.h>

/// Objects without a page, for tests of the tree.
namespace Quillet::Test {

using Params = Object::Params;
using Rect = Object::Rect;

inline Kernel::Counted<Renderer::FillDescriptor> MakePaint(float alpha = 1)
{
    const auto colour = Renderer::ColourRGB::Create(1, 0, 0, alpha, {});
    return Kernel::MakeCounted<Renderer::FillDescriptor>(
        Kernel::ConsolidateObjectPostAlloc(Renderer::FillSolid(colour)), Renderer::FillBlendMode::Normal);
}

inline Kernel::Counted<Renderer::LineStyleDescriptor> MakeLine(double width)
{
    Renderer::LineStyle style;
    style.width = width;
    style.join = Renderer::LineStyle::JoinRound;
    return Kernel::MakeCounted<Renderer::LineStyleDescriptor>(Kernel::ConsolidateObjectPostAlloc(style));
}

inline Kernel::Counted<GroupObject> MakeGroup()
{
    return Kernel::MakeCounted<GroupObject>(nullptr);
}

inline Kernel::Counted<PathObject> MakeBox(const Rect& rect)
{
    return Kernel::MakeCounted<PathObject>(nullptr, rect, MakePaint());
}

inline Kernel::Counted<const Geometry::PolyCurveDbl> MakeRectangle(const Rect& rect)
{
    return Kernel::MakeCounted<Geometry::PolyCurveDbl>(rect);
}

} // namespace Quillet::Test
