#pragma once

namespace Kernel {

/// A point or a vector in the plane; the unit is the user's.
template <typename T>
struct PointT
{
    T x{};
    T y{};

    friend bool operator==(const PointT&, const PointT&) = default;
    friend PointT operator+(PointT a, PointT b) { return {a.x + b.x, a.y + b.y}; }
    friend PointT operator-(PointT a, PointT b) { return {a.x - b.x, a.y - b.y}; }
    friend PointT operator*(PointT a, T scale) { return {a.x * scale, a.y * scale}; }
};

} // namespace Kernel
