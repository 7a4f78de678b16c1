#include "Convert.h"

#include "Conversion.h"
#include "Guarded.h"
#include "Interrupt.h"
#include "OpenDocument.h"
#include "OutputFile.h"
#include "PageNames.h"
#include "PageRange.h"
#include "WriteAll.h"
#include "exporters/Format.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace Host {

namespace {

using namespace Quillet;

void ApplyOptions(PdfDocument& document, const ConvertOptions& options)
{
    document.SetTextFidelity(options.fidelity);
    document.SetIsGroupTextLines(options.isGroupTextLines);
    document.SetPageClipArea(options.clip);
    document.SetLanguageId(options.language);
}

/// Each worker but this thread has a document of its own: a document belongs to one thread. All draw on one account.
void RunWorkers(Conversion& conversion, OpenedDocument& opened, const ConvertOptions& options, int count)
{
    const auto work = [&] {
        // Without this worker the others do all.
        Guarded([&] {
            OpenedDocument own(opened.input, opened.document->GetBudget());
            if (own.status != ExitDone) return;
            ApplyOptions(*own.document, options);
            conversion.Run(own);
        });
    };
    std::vector<std::jthread> workers;
    workers.reserve(static_cast<std::size_t>(count));
    try {
        for (int i = 1; i < count; ++i)
            workers.emplace_back(work);
    } catch (const std::exception&) {
        // The machine has no more threads.
    }
    conversion.Run(opened);
}

int ComplainOfItself(const std::string& name)
{
    PrintLine("quillet: " + name + ": is the document itself");
    return ExitCommandLine;
}

/// `stage` is the status for what may still be thrown.
int Convert(const ConvertOptions& options, ExitStatus& stage)
{
    std::error_code error;
    const bool isStream = OutputFile::IsStream(options.out);
    if (!isStream && std::filesystem::equivalent(options.input.file, options.out, error))
        return ComplainOfItself(options.out);
    OpenedDocument opened(options.input);
    opened.AskForPassword();
    if (Interrupt::IsSet()) return ExitInterrupted;
    opened.PrintOpeningProblems();
    if (opened.status != ExitDone) return opened.status;
    stage = ExitPageFailed;
    ApplyOptions(*opened.document, options);

    const int pageCount = opened.document->GetPageCount();
    auto pages = PageRange::Parse(options.pages, pageCount);
    if (!pages) {
        PrintLine("quillet: --pages " + options.pages + ": no such pages; the document has " +
                  std::to_string(pageCount));
        return ExitCommandLine;
    }
    if (pageCount == 0) PrintLine("quillet: " + options.input.file + ": no pages");
    const bool isFileAPage = options.format->isFileAPage && pages->GetLength() > 1 && !isStream;
    if (isFileAPage) {
        const std::string itself = FindPageName(options.out, *pages, options.input.file);
        if (!itself.empty()) return ComplainOfItself(itself);
    }

    // More than the machine can run would only open the document more often, on the same account.
    const long long useful = 4LL * std::max(std::thread::hardware_concurrency(), 1U);
    const auto workerCount = static_cast<int>(std::min<long long>({options.jobs, useful, pages->GetLength()}));
    Conversion conversion(options, std::move(*pages), isFileAPage);
    conversion.Begin(opened);
    RunWorkers(conversion, opened, options, workerCount);
    return conversion.Finish(*opened.document);
}

} // namespace

int RunConvert(const ConvertOptions& options)
{
    return RunVerb(options.input.file, [&](ExitStatus& stage) { return Convert(options, stage); });
}

} // namespace Host
