#pragma once

#include "fonts/MapBytes.h"

#include <cstddef>
#include <iterator>
#include <map>

namespace Quillet {

/// Values of whole numbers that come in runs; a file may give a run any length, so that a number is never kept alone.
///
/// A value that counts on along its run says by `Advanced(distance)` what it is further on; any other holds for the
/// whole run. Runs do not overlap, and neighbours that continue each other are one.
template <typename Value>
class RangeMap
{
public:
    struct Range
    {
        int first;
        int last;
        /// Of the first number.
        Value value;

        Value At(int number) const
        {
            if constexpr (requires { value.Advanced(0LL); })
                return value.Advanced(static_cast<long long>(number) - first);
            else
                return value;
        }
    };

    /// Overrides what was there. `last` is not below `first`.
    void Set(int first, int last, const Value& value)
    {
        auto after = ranges.upper_bound(last);
        while (after != ranges.begin()) {
            const auto place = std::prev(after);
            const Range old = place->second;
            if (old.last < first) break;
            after = ranges.erase(place);
            if (old.last > last) {
                after = ranges.emplace(last + 1, Range{last + 1, old.last, old.At(last + 1)}).first;
            }
            if (old.first < first) {
                ranges.emplace(old.first, Range{old.first, first - 1, old.value});
                break;
            }
        }
        Insert({first, last, value});
    }

    /// The run with the number in it; null for none.
    const Range* Find(int number) const
    {
        const auto after = ranges.upper_bound(number);
        if (after == ranges.begin()) return nullptr;
        const Range& range = std::prev(after)->second;
        return range.last >= number ? &range : nullptr;
    }

    // The runs in order, each behind its first number.
    auto begin() const { return ranges.begin(); }
    auto end() const { return ranges.end(); }
    std::size_t size() const { return ranges.size(); }

    std::size_t GetBytes() const { return GetMapBytes(ranges); }

private:
    /// Whether `next` goes on where `range` ends.
    static bool Continues(const Range& range, const Range& next)
    {
        return static_cast<long long>(range.last) + 1 == next.first && range.At(next.first) == next.value;
    }

    void Insert(Range range)
    {
        const auto next = ranges.upper_bound(range.first);
        if (next != ranges.begin()) {
            const auto before = std::prev(next);
            if (Continues(before->second, range)) {
                range = {before->second.first, range.last, before->second.value};
                ranges.erase(before);
            }
        }
        if (next != ranges.end() && Continues(range, next->second)) {
            range.last = next->second.last;
            ranges.erase(next);
        }
        ranges.insert_or_assign(range.first, range);
    }

    std::map<int, Range> ranges;
};

} // namespace Quillet
