#include <Story/TabStops.h>

#include <Kernel/HashAccumulator.h>
#include <Renderer/ValueKey.h>

#include <cmath>
#include <iterator>
#include <tuple>

namespace Story {

namespace {

std::size_t GetHashOf(const TabStop& stop)
{
    std::size_t hash = Kernel::GetHashSeed();
    Kernel::AddToHash(hash, Renderer::KeyOf(stop.position));
    Kernel::AddToHash(hash, stop.type);
    Kernel::AddToHash(hash, stop.fromRight);
    Kernel::AddToHash(hash, stop.leader);
    return hash;
}

} // namespace

bool TabStops::Order::operator()(const TabStop& a, const TabStop& b) const
{
    return std::tie(a.fromRight, a.position) < std::tie(b.fromRight, b.position);
}

void TabStops::Set(const TabStop& stop)
{
    if (!std::isfinite(stop.position)) return;
    Delete(stop.position, stop.fromRight);
    stops.insert(stop);
    hash += GetHashOf(stop);
}

void TabStops::Delete(double position, bool fromRight)
{
    if (!std::isfinite(position)) return;
    const auto stop = stops.find(TabStop(position, Tab::Left, fromRight));
    if (stop == stops.end()) return;
    hash -= GetHashOf(*stop);
    stops.erase(stop);
}

TabStops::const_iterator TabStops::FindInexact(double position, bool fromRight, double tolerance) const
{
    if (!std::isfinite(position)) return end();
    const auto getDistance = [&](const_iterator stop) {
        return stop != end() && stop->fromRight == fromRight ? std::abs(stop->position - position) : HUGE_VAL;
    };
    auto nearest = stops.lower_bound(TabStop(position, Tab::Left, fromRight));
    if (nearest != begin() && getDistance(std::prev(nearest)) <= getDistance(nearest)) --nearest;
    return getDistance(nearest) <= tolerance ? nearest : end();
}

TabStops::const_iterator TabStops::FindNextInexact(double position, double width, double tolerance) const
{
    const double first = position - tolerance;
    if (std::isnan(first)) return end();
    const auto left = stops.lower_bound(TabStop(first, Tab::Left, false));
    if (left != end() && !left->fromRight) return left;
    if (!(width > 0)) return end();
    // Of those from the right, a frame has the last one first.
    const auto behind = stops.upper_bound(TabStop(width - first, Tab::Left, true));
    if (behind == begin()) return end();
    const auto right = std::prev(behind);
    return right->fromRight ? right : end();
}

} // namespace Story
