#pragma once

#include <Kernel/PointT.h>
#include <Kernel/RectT.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Geometry {

/// The box around the points added so far. Points that are not finite are left out.
template <typename T>
struct BoundingBoxT
{
    T left = std::numeric_limits<T>::infinity();
    T top = std::numeric_limits<T>::infinity();
    T right = -std::numeric_limits<T>::infinity();
    T bottom = -std::numeric_limits<T>::infinity();

    bool IsEmpty() const { return left > right || top > bottom; }

    void AddX(T x)
    {
        if (!std::isfinite(x)) return;
        left = std::min(left, x);
        right = std::max(right, x);
    }

    void AddY(T y)
    {
        if (!std::isfinite(y)) return;
        top = std::min(top, y);
        bottom = std::max(bottom, y);
    }

    void Add(Kernel::PointT<T> point)
    {
        if (!std::isfinite(point.x) || !std::isfinite(point.y)) return;
        AddX(point.x);
        AddY(point.y);
    }

    /// The rectangle of zeros if nothing was added.
    Kernel::RectT<T> GetRect() const
    {
        return IsEmpty() ? Kernel::RectT<T>{} : Kernel::RectT<T>{left, top, right, bottom};
    }
};

} // namespace Geometry
