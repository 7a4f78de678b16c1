#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Host {

/// The pages to work on, in order. It takes no memory for what a file merely claims to have.
class PageRange
{
public:
    /// From a text like "1-3,7"; "5-" goes to the last page, and an empty text means all. Nothing for a text that is
    /// none of these or that names a page which the document does not have.
    static std::optional<PageRange> Parse(const std::string& text, int pageCount);

    long long GetLength() const { return length; }
    /// The index, from 0, of the page at a place in the range.
    int GetIndex(long long place) const;
    bool Contains(int index) const;

private:
    struct Span
    {
        int first;
        int last;
    };
    std::vector<Span> spans;
    long long length = 0;

    void Add(Span span);
};

} // namespace Host
