#pragma once

#include <Story/Style.h>

#include <cstddef>
#include <unordered_map>
#include <vector>

namespace Story {

/// The styles of a document, in the order in which they were made.
class QUILLET_API StyleSheet : public Kernel::Countable
{
public:
    /// Adds a style. With `replaces`, one of the same name goes; without, it stays and the new one is added beside it.
    void Add(const Kernel::Consolidated<Style>& style, bool replaces);
    const std::vector<Kernel::Consolidated<Style>>& GetStyles() const { return styles; }
    /// The first style with an equal delta; null for none.
    Kernel::Consolidated<Style> FindByDelta(const Delta& delta) const;

private:
    /// By the values of the deltas, which the styles hold.
    struct DeltaHash
    {
        std::size_t operator()(const Delta* delta) const;
    };
    struct DeltaEqual
    {
        bool operator()(const Delta* a, const Delta* b) const;
    };

    std::vector<Kernel::Consolidated<Style>> styles;
    std::unordered_map<const Delta*, Kernel::Consolidated<Style>, DeltaHash, DeltaEqual> byDelta;
};

} // namespace Story
