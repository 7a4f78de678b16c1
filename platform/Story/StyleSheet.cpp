#include <Story/StyleSheet.h>

namespace Story {

std::size_t StyleSheet::DeltaHash::operator()(const Delta* delta) const
{
    return delta->GetHash();
}

bool StyleSheet::DeltaEqual::operator()(const Delta* a, const Delta* b) const
{
    return a == b || *a == *b;
}

void StyleSheet::Add(const Kernel::Consolidated<Style>& style, bool replaces)
{
    if (!style) return;
    const auto index = [this](const Kernel::Consolidated<Style>& added) {
        // The first of those that look the same stays.
        if (added->GetDelta()) byDelta.try_emplace(added->GetDelta().Get(), added);
    };
    const auto isReplaced = [&](const Kernel::Consolidated<Style>& old) { return old->GetName() == style->GetName(); };
    if (replaces && std::erase_if(styles, isReplaced) != 0) {
        byDelta.clear();
        for (const auto& kept : styles)
            index(kept);
    }
    styles.push_back(style);
    index(style);
}

Kernel::Consolidated<Style> StyleSheet::FindByDelta(const Delta& delta) const
{
    const auto found = byDelta.find(&delta);
    return found == byDelta.end() ? nullptr : found->second;
}

} // namespace Story
