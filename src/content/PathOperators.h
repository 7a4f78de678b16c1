#pragma once

#include <Quillet/Fill.h>

#include "content/Operator.h"

#include <Geometry/PolyCurveDbl.h>
#include <Geometry/WindingOrderMode.h>

#include <Kernel/Counted.h>

#include <string>

namespace Quillet {

/// m
class QUILLET_API OpMoveTo : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// l
class QUILLET_API OpLineTo : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// re
class QUILLET_API OpRectangle : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// c
class QUILLET_API OpCurveToC : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// v: the first control point is the current point.
class QUILLET_API OpCurveToV : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// y: the second control point is the end.
class QUILLET_API OpCurveToY : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// h
class QUILLET_API OpClosePath : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// W, W*
class QUILLET_API OpClippingAction : public Operator
{
public:
    explicit OpClippingAction(ClippingAction::Type pending) : action(pending) {}
    void Execute(const ArgVec& args) const override;

    ClippingAction::Type action;
};

enum class PathEnd { KeepOpen, Close };

/// S, s, f, F, f*, B, B*, b, b*, n: paints the path, then makes it the clip if a clipping operator asked for that.
class QUILLET_API OpPaintPath : public Operator
{
public:
    OpPaintPath(Fill::Type type, Geometry::WindingOrderMode mode, PathEnd end)
        : fillType(type), windingMode(mode), isClose(end == PathEnd::Close)
    {}
    void Execute(const ArgVec& args) const override;
    std::string GetName() const override;

    Fill::Type fillType;
    Geometry::WindingOrderMode windingMode;
    bool isClose;

private:
    void Paint() const;
    void AddPathObject(Kernel::Counted<Geometry::PolyCurveDbl> path, Fill::Type type) const;
    void Clip(ClippingAction::Type action) const;
};

} // namespace Quillet
