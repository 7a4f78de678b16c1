#pragma once

#include <Kernel/Export.h>
#include <Kernel/RectT.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Quillet {

/// Finds the boxes near a box, so that objects need not be compared all with all.
///
/// A box lies in a cell of a grid whose cells have its own width and height, rounded up to powers of two: so whatever
/// is found is of a size with the cells that were looked at. What is looked at is paid for.
class QUILLET_API BoxIndex
{
public:
    using Box = Kernel::RectT<double>;

    /// Puts `box` in for `item`, in the place of the box that it had.
    void Set(std::size_t item, const Box& box);
    void Clear();

    /// Calls `visit` on each item whose box may meet `box`, edges included, in no order, and on some others; once
    /// `visit` answers false, on no more. False if `visit` did, or if the work cannot be paid for.
    template <typename Visit>
    bool VisitNear(const Box& box, Visit visit) const
    {
        if (!VisitAll(odd, visit)) return false;
        for (const auto& [size, grid] : grids) {
            const Range range = GetRange(box, size);
            if (!PayFor(range, grid)) return false;
            if (range.GetCount() > static_cast<double>(grid.size())) {
                for (const auto& [place, items] : grid) {
                    if (range.Contains(place) && !VisitAll(items, visit)) return false;
                }
                continue;
            }
            for (std::int64_t y = range.top; y <= range.bottom; ++y) {
                for (std::int64_t x = range.left; x <= range.right; ++x) {
                    const auto cell = grid.find({x, y});
                    if (cell != grid.end() && !VisitAll(cell->second, visit)) return false;
                }
            }
        }
        return true;
    }

private:
    using Items = std::vector<std::size_t>;

    struct Place
    {
        std::int64_t x = 0;
        std::int64_t y = 0;

        friend bool operator==(const Place&, const Place&) = default;
    };
    struct PlaceHash
    {
        std::size_t operator()(const Place& place) const;
    };
    /// Exponents of a cell's width and height.
    struct Size
    {
        int width = 0;
        int height = 0;

        friend bool operator<(const Size& a, const Size& b)
        {
            return a.width != b.width ? a.width < b.width : a.height < b.height;
        }
        friend bool operator==(const Size&, const Size&) = default;
    };
    struct Range
    {
        std::int64_t left;
        std::int64_t top;
        std::int64_t right;
        std::int64_t bottom;

        double GetCount() const;
        bool Contains(const Place& place) const;
    };
    struct Cell
    {
        Size size;
        Place place;
        /// Without a place in a grid: not finite, or far out.
        bool isOdd = true;

        friend bool operator==(const Cell&, const Cell&) = default;
    };
    using Grid = std::unordered_map<Place, Items, PlaceHash>;

    static Cell GetCell(const Box& box);
    static Range GetRange(const Box& box, Size size);
    static bool PayFor(const Range& range, const Grid& grid);
    static bool PayFor(const Items& items);

    template <typename Visit>
    static bool VisitAll(const Items& items, Visit& visit)
    {
        if (!PayFor(items)) return false;
        for (const std::size_t item : items) {
            if (!visit(item)) return false;
        }
        return true;
    }

    std::map<Size, Grid> grids;
    Items odd;
    std::unordered_map<std::size_t, Cell> cells;
};

} // namespace Quillet
