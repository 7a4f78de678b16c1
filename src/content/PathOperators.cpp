#include "content/PathOperators.h"

#include "document/ArgVec.h"
#include "content/GraphicsStateStack.h"
#include "document/Limits.h"
#include "objects/PaintedObjects.h"

#include <Quillet/Budget.h>

#include <Renderer/LineStyle.h>

#include <utility>

namespace Quillet {

namespace {

using Geometry::PolyCurveDbl;
using Kernel::Counted;

/// The side of the clip that an empty path leaves: the tree keeps a real clip, and nothing shows through it.
constexpr double c_emptyClipSize = 1e-5;

constexpr OperatorCategory::Type c_startMask = OperatorCategory::Page | OperatorCategory::Path;
constexpr OperatorCategory::Type c_paintMask = OperatorCategory::Path | OperatorCategory::Clip;

void SpendSegments(unsigned count)
{
    Budget::Spend(Limits::c_segmentUnits * count);
}

} // namespace

void OpMoveTo::Execute(const ArgVec& args) const
{
    CheckCall(c_startMask, args, 2);
    SpendSegments(1);
    const double x = args.GetReal(0);
    const double y = args.GetReal(1);
    GetPath().StartSubPath(x, y);
    SetCurrentCategory(OperatorCategory::Path);
}

void OpLineTo::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Path, args, 2);
    SpendSegments(1);
    const double x = args.GetReal(0);
    const double y = args.GetReal(1);
    GetSubPath().LineTo(x, y);
}

void OpRectangle::Execute(const ArgVec& args) const
{
    CheckCall(c_startMask, args, 4);
    SpendSegments(4);
    const double x = args.GetReal(0);
    const double y = args.GetReal(1);
    const double width = args.GetReal(2);
    const double height = args.GetReal(3);
    PdfSubPath& subPath = GetPath().StartSubPath(x, y);
    subPath.LineTo(x + width, y);
    subPath.LineTo(x + width, y + height);
    subPath.LineTo(x, y + height);
    subPath.Close();
    SetCurrentCategory(OperatorCategory::Path);
}

void OpCurveToC::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Path, args, 6);
    SpendSegments(1);
    const double x1 = args.GetReal(0);
    const double y1 = args.GetReal(1);
    const double x2 = args.GetReal(2);
    const double y2 = args.GetReal(3);
    const double x3 = args.GetReal(4);
    const double y3 = args.GetReal(5);
    GetSubPath().CurveTo(x1, y1, x2, y2, x3, y3);
}

void OpCurveToV::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Path, args, 4);
    SpendSegments(1);
    const double x2 = args.GetReal(0);
    const double y2 = args.GetReal(1);
    const double x3 = args.GetReal(2);
    const double y3 = args.GetReal(3);
    PdfSubPath& subPath = GetSubPath();
    const PdfSubPath::Point current = subPath.points.back();
    subPath.CurveTo(current.x, current.y, x2, y2, x3, y3);
}

void OpCurveToY::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Path, args, 4);
    SpendSegments(1);
    const double x1 = args.GetReal(0);
    const double y1 = args.GetReal(1);
    const double x3 = args.GetReal(2);
    const double y3 = args.GetReal(3);
    GetSubPath().CurveTo(x1, y1, x3, y3, x3, y3);
}

void OpClosePath::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Path, args, 0);
    Check(GetPath().CloseBackSubPath(), Error::General);
}

void OpClippingAction::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Path, args, 0);
    SetClippingAction(action);
    SetCurrentCategory(OperatorCategory::Clip);
}

void OpPaintPath::Execute(const ArgVec& args) const
{
    CheckCall(c_paintMask, args, 0);
    if (isClose) Check(GetPath().CloseBackSubPath(), Error::General);

    const ClippingAction::Type action = GetClippingAction();
    // A path that leaves no trace does not end a run of text either.
    if (action != ClippingAction::None || fillType != Fill::None) FlushObjects();
    Paint();
    if (action != ClippingAction::None) {
        SetClippingAction(ClippingAction::None);
        Clip(action);
    }
    GetPath().Clear();
    SetCurrentCategory(OperatorCategory::Page);
}

void OpPaintPath::Paint() const
{
    const bool isRoundCap = GetState().lineStyle->cap == Renderer::LineStyle::CapHalfCircle;
    if (Counted<PolyCurveDbl> path = GetPath().MakePath(fillType, isRoundCap)) {
        AddPathObject(std::move(path), fillType);
    } else if (fillType == Fill::FillAndStroke) {
        AddPathObject(GetPath().MakePath(Fill::Fill, false), Fill::Fill);
        AddPathObject(GetPath().MakePath(Fill::Stroke, isRoundCap), Fill::Stroke);
    }
}

void OpPaintPath::AddPathObject(Counted<PolyCurveDbl> path, Fill::Type type) const
{
    if (!path) return;
    GraphicsState& state = GetState();
    state.AddObject(MakePathObject(stack->page.Get(), state, std::move(path), type, windingMode));
}

void OpPaintPath::Clip(ClippingAction::Type action) const
{
    Counted<PolyCurveDbl> clip = GetPath().MakePath(Fill::Fill, false);
    if (!clip) clip = Kernel::MakeCounted<PolyCurveDbl>(PolyCurveDbl::Rect{0, 0, c_emptyClipSize, c_emptyClipSize});
    for (const Counted<Geometry::CurveDbl>& curve : *clip)
        curve->MakeClosed();
    GraphicsState& state = GetState();
    state.PushClippingPath(*clip, static_cast<Geometry::WindingOrderMode>(action), state.ltCurrent);
}

std::string OpPaintPath::GetName() const
{
    std::string name = isClose ? "Close" : "";
    if (fillType & Fill::Fill) name += "Fill";
    if (fillType & Fill::Stroke) name += "Stroke";
    if (fillType == Fill::None) name += "NoOp";
    return name + "Path";
}

} // namespace Quillet
