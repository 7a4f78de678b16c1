#pragma once

#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>
#include <Quillet/PathObject.h>

#include "objects/SoftMask.h"

#include <Renderer/ColourRGB.h>
#include <Renderer/FillSolid.h>

#include <cmath>
#include <numbers>

/// Objects without a page, for tests of the tree.
namespace Quillet::Test {

using Params = Object::Params;
using Rect = Object::Rect;

inline Kernel::Counted<Renderer::FillDescriptor> MakePaint(const Kernel::Consolidated<Renderer::Colour>& colour)
{
    return Kernel::MakeCounted<Renderer::FillDescriptor>(
        Kernel::ConsolidateObjectPostAlloc(Renderer::FillSolid(colour)), Renderer::FillBlendMode::Normal);
}

inline Kernel::Counted<Renderer::FillDescriptor> MakePaint(float alpha = 1)
{
    return MakePaint(Renderer::ColourRGB::Create(1, 0, 0, alpha, {}));
}

inline Kernel::Counted<Renderer::LineStyleDescriptor> MakeLine(double width)
{
    Renderer::LineStyle style;
    style.width = width;
    style.join = Renderer::LineStyle::JoinRound;
    return Kernel::MakeCounted<Renderer::LineStyleDescriptor>(Kernel::ConsolidateObjectPostAlloc(style));
}

inline Kernel::Counted<GroupObject> MakeGroup(const GroupObject::Children& children = {})
{
    auto group = Kernel::MakeCounted<GroupObject>(nullptr);
    group->Insert(group->children.end(), children.begin(), children.end());
    return group;
}

inline Kernel::Counted<PathObject> MakeBox(const Rect& rect = {0, 0, 1, 1})
{
    return Kernel::MakeCounted<PathObject>(nullptr, rect, MakePaint());
}

inline Kernel::Counted<const Geometry::PolyCurveDbl> MakeRectangle(const Rect& rect)
{
    return Kernel::MakeCounted<Geometry::PolyCurveDbl>(rect);
}

/// Counterclockwise with y upward.
inline Params MakeTurn(double degrees)
{
    const double angle = degrees * std::numbers::pi / 180;
    return Params::FromPdf(std::cos(angle), std::sin(angle), -std::sin(angle), std::cos(angle), 0, 0);
}

inline Kernel::Counted<Geometry::PolyCurveDbl> MakePath(const Kernel::Counted<Geometry::CurveDbl>& curve)
{
    const auto path = Kernel::MakeCounted<Geometry::PolyCurveDbl>();
    path->AddCurve(curve);
    return path;
}

/// From (0, 0) to (30, 0), and up to 15 although its control points are at 20.
inline Kernel::Counted<Geometry::PolyCurveDbl> MakeArch()
{
    const auto curve = Kernel::MakeCounted<Geometry::CurveDbl>();
    curve->AddNode({0, 0});
    curve->AddBezierCurve({30, 0}, {0, 20}, {30, 20});
    return MakePath(curve);
}

/// Four arcs, from what the unit circle has at (1, 0).
inline Kernel::Counted<Geometry::CurveDbl> MakeOval(const Params& fromUnitCircle)
{
    constexpr double k = 0.5522847498307936;
    const auto curve = Kernel::MakeCounted<Geometry::CurveDbl>();
    curve->AddNode({1, 0});
    curve->AddBezierCurve({0, 1}, {1, k}, {k, 1});
    curve->AddBezierCurve({-1, 0}, {-k, 1}, {-1, k});
    curve->AddBezierCurve({0, -1}, {-1, -k}, {-k, -1});
    curve->AddBezierCurve({1, 0}, {k, -1}, {1, -k});
    curve->MakeClosed();
    curve->Transform(fromUnitCircle);
    return curve;
}

inline bool IsNear(const Rect& a, const Rect& b, double tolerance)
{
    return a.Inflated(tolerance).Contains(b) && b.Inflated(tolerance).Contains(a);
}

} // namespace Quillet::Test
