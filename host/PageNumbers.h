#pragma once

#include "PageQueue.h"
#include "StyleNames.h"

#include <utility>

namespace Host {

/// What objects and styles are called in a file. It depends on the pages alone, and not on who builds which of them, or
/// when: names are given out in the order of the pages.
class PageNumbers
{
public:
    struct Given
    {
        long long firstId = 0;
        StyleNames::Names styleNames;
    };

    /// Once for each place: numbers for `idCount` objects, and names for the styles of what stands under `root`, which
    /// may be null. Waits for the places before it; whatever is thrown, those behind it need not wait.
    Given Give(long long place, long long idCount, const Quillet::GroupObject* root)
    {
        Given given;
        turns.InTurn(place, [&] {
            given.firstId = std::exchange(nextId, nextId + idCount);
            if (root) given.styleNames = styles.Add(*root);
        });
        return given;
    }

    /// Of all pages so far.
    const Story::StyleSheet& GetStyles() const { return styles.GetSheet(); }

private:
    PageQueue turns{0, 0};
    long long nextId = 0;
    StyleNames styles;
};

} // namespace Host
