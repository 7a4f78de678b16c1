#pragma once

#include <Kernel/Export.h>
#include <Kernel/RectT.h>

#include <cstddef>
#include <vector>

namespace Quillet {

/// Boxes that do not change, to find those around a point without looking at all.
class QUILLET_API BoxTree
{
public:
    using Rect = Kernel::RectT<double>;
    using Point = Kernel::PointT<double>;

    /// Boxes are known by their numbers. One that is no rectangle of numbers is around no point.
    explicit BoxTree(const std::vector<Rect>& boxes);

    /// The numbers of the boxes that contain the point, edges included, in ascending order. Whoever cannot pay for the
    /// search gets what was found by then.
    std::vector<std::size_t> Find(const Point& point) const;

private:
    struct Item
    {
        Rect box;
        std::size_t number;
    };

    void Build(std::size_t first, std::size_t last, std::size_t node);

    /// In the order of the leaves.
    std::vector<Item> items;
    /// A binary heap: the children of node n are 2n + 1 and 2n + 2, each with one half of its items.
    std::vector<Rect> nodes;
};

} // namespace Quillet
