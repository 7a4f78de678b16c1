#pragma once

#include "document/Limits.h"

#include <Quillet/Budget.h>
#include <Quillet/Char.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace Quillet {

/// Changes the attributes of a range: each becomes the interned result of `change` on a clone. Equal attributes are
/// changed once; those of neighbours seldom differ, so that the pair used last is looked at first. What cannot be paid
/// for stays as it is.
template <typename Change>
void ForAtts(std::vector<Char>::iterator first, std::vector<Char>::iterator last, Change change)
{
    using Atts = Kernel::Consolidated<Story::GlyphAtts>;
    // More are not worth the search: equal results are found equal when they are interned.
    constexpr std::size_t c_maxKnown = 5;
    std::vector<std::pair<Atts, Atts>> known;
    known.reserve(c_maxKnown);
    for (; first != last; ++first) {
        const auto pair = std::ranges::find(known, first->atts, &std::pair<Atts, Atts>::first);
        if (pair == known.end()) {
            if (!Budget::Spend(Limits::c_attsUnits)) return;
            Kernel::Counted<Story::GlyphAtts> clone = first->atts->Clone();
            change(*clone);
            if (known.size() == c_maxKnown) known.pop_back();
            known.insert(known.begin(), {first->atts, Kernel::ConsolidateObjectSacrifice(std::move(clone))});
        } else {
            std::rotate(known.begin(), pair, pair + 1);
        }
        first->atts = known.front().second;
    }
}

/// The first character of a range whose attributes are others than those of the range's first.
inline std::vector<Char>::const_iterator GetRunEnd(std::vector<Char>::const_iterator first,
                                                   std::vector<Char>::const_iterator last)
{
    return std::find_if(first, last, [first](const Char& c) { return !(c.atts == first->atts); });
}

} // namespace Quillet
