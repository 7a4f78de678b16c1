#pragma once

#include "Options.h"
#include "PageMaker.h"
#include "PageOutput.h"
#include "PageQueue.h"
#include "PageRange.h"
#include "Progress.h"

#include <atomic>
#include <optional>

namespace Host {

/// The pages of a document on their way into files: several workers make them, each with a document of its own, and
/// they are written in their order, with what went wrong with them told.
class Conversion
{
public:
    /// `options` have to stay. With `isFileAPage` each file is named for its page.
    Conversion(const ConvertOptions& usedOptions, PageRange pageRange, bool isFileAPage);

    /// Writes what stands before the pages.
    void Begin(OpenedDocument& opened);
    /// Works on pages until there are no more. Called by every worker.
    void Run(OpenedDocument& opened);
    /// Writes what stands behind the pages, and gives the exit status.
    int Finish(const Quillet::PdfDocument& document);

private:
    /// In the order of the pages, one at a time.
    void Finish(const PageResult& result, int index);
    void PrintPageProblems(const PageResult& result, int index);
    /// Once: of the document as a whole.
    void TellCutShort();
    void GiveUp();
    void StopAt(const std::optional<WriteFailure>& failure);
    void Stop();

    const ConvertOptions& options;
    PageRange range;
    PageQueue queue;
    PageMaker maker;
    PageOutput output;
    Progress progress;
    std::atomic<bool> isStopped = false;
    bool isCutShort = false;
    int missingCount = 0;
    int status = ExitDone;
};

} // namespace Host
