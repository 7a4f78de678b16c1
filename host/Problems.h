#pragma once

#include <Quillet/DefaultErrorHandler.h>

#include <map>
#include <string>
#include <utility>

namespace Host {

/// Counts the faults of a document, page by page.
class ProblemCounter : public Quillet::DefaultErrorHandler
{
public:
    void OnError(Quillet::Error::Type type) const override
    {
        ++counts[type];
        DefaultErrorHandler::OnError(type);
    }

    /// What was counted since the last call, by kind in ascending order.
    std::map<Quillet::Error::Type, long long> Take() { return std::exchange(counts, {}); }

    /// Whether something was cut short since the last call; that is then no fault of the next page.
    bool TakeCutShort() { return counts.erase(Quillet::Error::CutShort) != 0; }

    mutable std::map<Quillet::Error::Type, long long> counts;
};

using Problems = std::map<Quillet::Error::Type, long long>;

/// "quillet: FILE: page 3: XRef table (5)", with a count for a kind that came more than once. `page` is from 1; 0 for
/// the document as a whole.
std::string FormatProblem(const std::string& file, int page, Quillet::Error::Type type, long long count = 1);
/// The same for what is no kind of the library's.
std::string FormatProblem(const std::string& file, int page, const std::string& words);

/// Whether any of the kinds ends the work on a page or document.
bool HasFatal(const Problems& problems);

} // namespace Host
