#pragma once

#include "OpenDocument.h"
#include "PageNumbers.h"
#include "Problems.h"
#include "exporters/LongText.h"

#include <Raster/ICCManager.h>

#include <optional>
#include <string>

namespace Host {

/// What became of one page.
struct PageResult
{
    /// The account had not enough left to begin with it.
    bool isUnpaid = false;
    bool isFound = false;
    bool isOutOfMemory = false;
    /// None for a page that could not be built.
    std::optional<LongText> text;
    Problems problems;
};

/// Builds pages and says them in the format of the output, for several workers at once, each with its own document.
class PageMaker
{
public:
    /// `options` have to stay.
    explicit PageMaker(const ConvertOptions& usedOptions) : options(usedOptions) {}

    /// Reads what all pages share; before the first of them.
    void Begin(const Quillet::PdfDocument& document);
    /// Makes the page that stands at a place in the row of all. Throws nothing.
    PageResult Make(OpenedDocument& opened, long long place, int index);
    /// Leaves a place out, so that no other waits for it.
    PageResult Skip(long long place);

    /// What stands behind the pages.
    LongText MakeTail(const Quillet::PdfDocument& document) const;

private:
    const ConvertOptions& options;
    std::string title;
    Raster::ICCManager::ICCProfileSet profiles;
    PageNumbers numbers;
};

} // namespace Host
