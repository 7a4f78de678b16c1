#include "objects/BoxIndex.h"

#include "document/Limits.h"

#include <Quillet/Budget.h>

#include <algorithm>
#include <cmath>

namespace Quillet {

namespace {

/// Smaller cells serve nobody: there is nothing as small on a page.
constexpr int c_leastExponent = -6;
/// Places of cells farther out than this many cells would not be told apart.
constexpr double c_farOut = 1e15;

int GetExponent(double length)
{
    int exponent = 0;
    std::frexp(length, &exponent);
    return std::max(exponent, c_leastExponent);
}

std::int64_t GetPlace(double value, int exponent)
{
    if (std::isnan(value)) return 0; // No such box overlaps anything.
    return static_cast<std::int64_t>(std::clamp(std::floor(std::ldexp(value, -exponent)), -c_farOut, c_farOut));
}

} // namespace

std::size_t BoxIndex::PlaceHash::operator()(const Place& place) const
{
    const auto mix = static_cast<std::uint64_t>(place.x) * 0x9E3779B97F4A7C15U + static_cast<std::uint64_t>(place.y);
    return static_cast<std::size_t>((mix ^ mix >> 32) * 0xD6E8FEB86659FD93U >> 16);
}

double BoxIndex::Range::GetCount() const
{
    return (static_cast<double>(right) - static_cast<double>(left) + 1) *
           (static_cast<double>(bottom) - static_cast<double>(top) + 1);
}

bool BoxIndex::Range::Contains(const Place& place) const
{
    return place.x >= left && place.x <= right && place.y >= top && place.y <= bottom;
}

BoxIndex::Cell BoxIndex::GetCell(const Box& box)
{
    Cell cell;
    const double width = box.GetWidth();
    const double height = box.GetHeight();
    if (!std::isfinite(width) || !std::isfinite(height) || width < 0 || height < 0 ||
        !std::isfinite(box.left + box.top))
        return cell;
    cell.size = {GetExponent(width), GetExponent(height)};
    cell.place = {GetPlace(box.left, cell.size.width), GetPlace(box.top, cell.size.height)};
    cell.isOdd =
        std::max(std::abs(static_cast<double>(cell.place.x)), std::abs(static_cast<double>(cell.place.y))) >= c_farOut;
    return cell;
}

BoxIndex::Range BoxIndex::GetRange(const Box& box, Size size)
{
    // A box lies in the cell of its corner and reaches into the next, never farther.
    return {GetPlace(box.left, size.width) - 1, GetPlace(box.top, size.height) - 1, GetPlace(box.right, size.width),
            GetPlace(box.bottom, size.height)};
}

bool BoxIndex::PayFor(const Range& range, const Grid& grid)
{
    const auto all = static_cast<double>(grid.size());
    const double units = std::min(range.GetCount() * Limits::c_cellUnits, all * Limits::c_walkedCellUnits);
    return Budget::Spend(static_cast<unsigned long long>(units));
}

bool BoxIndex::PayFor(const Items& items)
{
    return Budget::Spend(Limits::c_comparisonUnits * items.size());
}

void BoxIndex::Set(std::size_t item, const Box& box)
{
    const Cell cell = GetCell(box);
    const auto [known, isNew] = cells.try_emplace(item, cell);
    const auto find = [this](const Cell& at) -> Items& { return at.isOdd ? odd : grids[at.size][at.place]; };
    if (!isNew) {
        if (known->second == cell) return;
        std::erase(find(known->second), item);
        known->second = cell;
    }
    find(cell).push_back(item);
}

void BoxIndex::Clear()
{
    grids.clear();
    odd.clear();
    cells.clear();
}

} // namespace Quillet
