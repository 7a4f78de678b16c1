#pragma once

#include <Kernel/Countable.h>
#include <Story/TabStop.h>

#include <cstddef>
#include <set>

namespace Story {

/// The tab stops of a paragraph: those from the left by their positions, then those from the right by theirs.
class QUILLET_API TabStops : public Kernel::Countable
{
    struct Order
    {
        bool operator()(const TabStop& a, const TabStop& b) const;
    };
    using Stops = std::set<TabStop, Order>;

public:
    using const_iterator = Stops::const_iterator;

    /// Adds a stop; one at the same place, from the same side, is replaced. Without effect for a position that is not
    /// finite.
    void Set(const TabStop& stop);
    /// Takes away the stop at exactly this place.
    void Delete(double position, bool fromRight);
    /// The stop from that side that is nearest to `position` and within `tolerance` of it; `end()` for none.
    const_iterator FindInexact(double position, bool fromRight, double tolerance) const;
    /// The first stop at or behind `position`, less `tolerance`: of those from the left, and, once these are passed, of
    /// those from the right in a frame of `width`, 0 for a frame whose width is not known, which has none. `end()` for
    /// none.
    const_iterator FindNextInexact(double position, double width, double tolerance) const;

    const_iterator begin() const { return stops.begin(); }
    const_iterator end() const { return stops.end(); }
    bool IsEmpty() const { return stops.empty(); }
    bool HasFromRight() const { return !stops.empty() && stops.rbegin()->fromRight; }
    std::size_t GetHash() const { return hash; }

    friend bool operator==(const TabStops& a, const TabStops& b) { return a.hash == b.hash && a.stops == b.stops; }

private:
    Stops stops;
    /// The sum of the stops' own: many paragraphs have the same ones.
    std::size_t hash = 0;
};

} // namespace Story
