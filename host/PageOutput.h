#pragma once

#include "OutputFile.h"

#include <memory>
#include <optional>
#include <string>

namespace Host {

struct ConvertOptions;

/// What could not be written, and why.
struct WriteFailure
{
    std::string name;
    std::string reason;
};

/// Where the text of pages goes: one file with all of them, or a file a page.
class PageOutput
{
public:
    /// `options` have to stay. With `hasPageNames` each file is named for its page.
    PageOutput(const ConvertOptions& usedOptions, bool hasPageNames) : options(usedOptions), isFileAPage(hasPageNames)
    {}

    /// A folder cannot be replaced by a file.
    std::optional<WriteFailure> CheckPlace() const;
    /// Begins the file of all pages, if that is wanted, with what stands before them.
    std::optional<WriteFailure> Begin(const LongText& head);
    /// `index` is the page's, from 0.
    std::optional<WriteFailure> Write(const LongText& page, int index);
    /// Ends the file of all pages with what stands behind them; without this there is none.
    std::optional<WriteFailure> End(const LongText& tail);

private:
    const ConvertOptions& options;
    const bool isFileAPage;
    bool isFirst = true;
    /// Of all pages.
    std::unique_ptr<OutputFile> whole;
};

} // namespace Host
