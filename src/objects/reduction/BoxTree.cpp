#include "objects/reduction/BoxTree.h"

#include "document/Limits.h"

#include <Quillet/Budget.h>

#include <algorithm>
#include <cmath>

namespace Quillet {

namespace {

constexpr std::size_t c_leafSize = 8;
/// Infinite edges have no centre.
constexpr double c_farAway = 1e300;

bool Contains(const BoxTree::Rect& box, const BoxTree::Point& point)
{
    return point.x >= box.left && point.x <= box.right && point.y >= box.top && point.y <= box.bottom;
}

} // namespace

BoxTree::BoxTree(const std::vector<Rect>& boxes)
{
    items.reserve(boxes.size());
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const Rect& box = boxes[i];
        // What is no number is neither above nor below.
        if (!(box.left <= box.right && box.top <= box.bottom)) continue;
        const auto clamp = [](double edge) { return std::clamp(edge, -c_farAway, c_farAway); };
        items.push_back({{clamp(box.left), clamp(box.top), clamp(box.right), clamp(box.bottom)}, i});
    }
    if (!items.empty()) Build(0, items.size(), 0);
}

void BoxTree::Build(std::size_t first, std::size_t last, std::size_t node)
{
    Rect bounds = items[first].box;
    for (std::size_t i = first + 1; i < last; ++i)
        bounds = bounds.Union(items[i].box);
    if (nodes.size() <= node) nodes.resize(node + 1);
    nodes[node] = bounds;
    if (last - first <= c_leafSize) return;
    const bool isWide = bounds.GetWidth() > bounds.GetHeight();
    const auto middle = (first + last) / 2;
    const auto at = [this](std::size_t index) { return items.begin() + static_cast<std::ptrdiff_t>(index); };
    std::nth_element(at(first), at(middle), at(last), [isWide](const Item& a, const Item& b) {
        return isWide ? a.box.left / 2 + a.box.right / 2 < b.box.left / 2 + b.box.right / 2
                      : a.box.top / 2 + a.box.bottom / 2 < b.box.top / 2 + b.box.bottom / 2;
    });
    Build(first, middle, 2 * node + 1);
    Build(middle, last, 2 * node + 2);
}

std::vector<std::size_t> BoxTree::Find(const Point& point) const
{
    std::vector<std::size_t> found;
    struct Step
    {
        std::size_t first;
        std::size_t last;
        std::size_t node;
    };
    std::vector<Step> steps;
    if (!items.empty()) steps.push_back({0, items.size(), 0});
    while (!steps.empty()) {
        const auto [first, last, node] = steps.back();
        steps.pop_back();
        if (!Contains(nodes[node], point)) continue;
        if (!Budget::Spend(Limits::c_touchUnits)) break;
        if (last - first <= c_leafSize) {
            for (std::size_t i = first; i < last; ++i) {
                if (Contains(items[i].box, point)) found.push_back(items[i].number);
            }
            continue;
        }
        const std::size_t middle = (first + last) / 2;
        steps.push_back({first, middle, 2 * node + 1});
        steps.push_back({middle, last, 2 * node + 2});
    }
    std::ranges::sort(found);
    return found;
}

} // namespace Quillet
