#pragma once

#include <Kernel/PointT.h>

#include <algorithm>
#include <limits>
#include <type_traits>

namespace Kernel {

/// An upright rectangle by its corners, kept in order: `left` <= `right`, `top` <= `bottom`.
///
/// `top` is the smaller y whatever the direction of y: on a page with y upward it is the lower edge. The empty
/// rectangle holds the lowest value in all four places and means "no rectangle"; a rectangle of zeros has a place but
/// no extent.
template <typename T>
struct RectT
{
    T left{};
    T top{};
    T right{};
    T bottom{};

    friend bool operator==(const RectT&, const RectT&) = default;

    static constexpr RectT MakeEmpty()
    {
        constexpr T lowest = std::numeric_limits<T>::lowest();
        return {lowest, lowest, lowest, lowest};
    }

    /// The rectangle spanned by any two opposite corners.
    static constexpr RectT FromCorners(PointT<T> a, PointT<T> b)
    {
        return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
    }

    constexpr bool IsEmpty() const { return *this == MakeEmpty(); }
    constexpr T GetWidth() const { return right - left; }
    constexpr T GetHeight() const { return bottom - top; }
    constexpr PointT<T> GetCentre() const { return {(left + right) / 2, (top + bottom) / 2}; }

    constexpr RectT Inflated(T amount) const { return {left - amount, top - amount, right + amount, bottom + amount}; }

    /// Edges included.
    constexpr bool Contains(const RectT& other) const
    {
        return other.left >= left && other.right <= right && other.top >= top && other.bottom <= bottom;
    }

    /// The smallest rectangle around both; the empty one adds nothing.
    constexpr RectT UnionRectIgnoreEmpty(const RectT& other) const
    {
        if (IsEmpty()) return other;
        if (other.IsEmpty()) return *this;
        return {std::min(left, other.left), std::min(top, other.top), std::max(right, other.right),
                std::max(bottom, other.bottom)};
    }

    constexpr RectT Union(const RectT& other) const { return UnionRectIgnoreEmpty(other); }

    /// What both cover, or the rectangle of zeros if they are apart. Two that share an edge meet in that edge.
    constexpr RectT Intersection(const RectT& other) const
    {
        const RectT cut{std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
                        std::min(bottom, other.bottom)};
        return cut.left > cut.right || cut.top > cut.bottom ? RectT{} : cut;
    }
};

} // namespace Kernel
