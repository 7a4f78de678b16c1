#include "PageRange.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace Host {

namespace {

/// The whole text as a number from 1 to `last`.
std::optional<int> ParsePage(std::string_view text, int last)
{
    int page = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), page);
    if (error != std::errc() || end != text.data() + text.size() || page < 1 || page > last) return {};
    return page;
}

} // namespace

std::optional<PageRange> PageRange::Parse(const std::string& text, int pageCount)
{
    PageRange range;
    if (text.empty()) {
        if (pageCount > 0) range.Add({0, pageCount - 1});
        return range;
    }
    std::string_view rest = text;
    while (true) {
        const auto comma = rest.find(',');
        const std::string_view part = rest.substr(0, comma);
        const auto dash = part.find('-');
        const auto first = ParsePage(part.substr(0, dash), pageCount);
        auto last = first;
        if (dash != part.npos) {
            last = dash + 1 == part.size() ? pageCount : ParsePage(part.substr(dash + 1), pageCount);
        }
        if (!first || !last || *last < *first) return {};
        range.Add({*first - 1, *last - 1});
        if (comma == rest.npos) return range;
        rest.remove_prefix(comma + 1);
    }
}

int PageRange::GetIndex(long long place) const
{
    for (const Span& span : spans) {
        const long long size = static_cast<long long>(span.last) - span.first + 1;
        if (place < size) return static_cast<int>(span.first + place);
        place -= size;
    }
    return -1;
}

bool PageRange::Contains(int index) const
{
    return std::ranges::any_of(spans, [index](const Span& span) { return span.first <= index && index <= span.last; });
}

void PageRange::Add(Span span)
{
    spans.push_back(span);
    length += static_cast<long long>(span.last) - span.first + 1;
}

} // namespace Host
