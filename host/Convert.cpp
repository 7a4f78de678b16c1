#include "Convert.h"

#include "Interrupt.h"
#include "OpenDocument.h"
#include "OutputFile.h"
#include "PageQueue.h"
#include "PageRange.h"
#include "Progress.h"
#include "exporters/JsonExporter.h"
#include "exporters/SvgExporter.h"

#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <thread>

namespace Host {

namespace {

using namespace Quillet;

/// What a worker makes of one page.
struct PageResult
{
    Kernel::Counted<const Page> page;
    Kernel::Counted<GroupObject> root;
    Problems problems;
    /// Numbers of objects that the page took.
    int idCount = 0;
};

PageResult BuildPage(OpenedDocument& opened, int index)
{
    PageResult result;
    // Numbers depend on the page alone, and not on the pages that this document happened to build before.
    opened.document->nextObjectId = 0;
    try {
        result.page = opened.document->GetPage(index);
        opened.document->SetPage(index);
        result.root = result.page ? result.page->BuildObjects() : nullptr;
        if (result.root) result.root->UpdateBBoxes();
    } catch (Error::Type) {
        result.root = nullptr;
    } catch (const std::exception&) {
        // Memory ran out; the next page may need less.
        result.root = nullptr;
    }
    result.problems = opened.counter.Take();
    result.idCount = opened.document->nextObjectId;
    return result;
}

std::string MakePageFileName(const std::string& out, int page)
{
    const auto slash = out.rfind('/');
    auto dot = out.rfind('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) dot = out.size();
    return out.substr(0, dot) + "-" + std::to_string(page) + out.substr(dot);
}

class Conversion
{
public:
    Conversion(const ConvertOptions& usedOptions, const PdfDocument& document, PageRange pageRange)
        : options(usedOptions), range(std::move(pageRange)), queue(range.GetLength(), usedOptions.jobs + 2),
          progress(!options.input.isQuiet, range.GetLength()), title(document.GetTitle()),
          profiles(document.GetICCProfiles(-1))
    {
        std::error_code error;
        if (std::filesystem::is_directory(options.out, error)) {
            FailToWrite(options.out, std::make_error_code(std::errc::is_a_directory).message());
            return;
        }
        isFileAPage = range.GetLength() > 1 && !OutputFile::IsStream(options.out);
        if (options.format != Format::Json) return;
        json = std::make_unique<OutputFile>(options.out);
        if (!json->IsGood()) FailToWrite(options.out, json->GetFailure());
        json->Write("{\"document\":" + MakeDocumentJson(document) + ",\n\"pages\":[");
    }

    /// Works on pages until there are no more.
    void Run(OpenedDocument& opened)
    {
        for (long long place; (place = queue.TakePlace()) >= 0;) {
            const int index = range.GetIndex(place);
            PageResult result;
            if (!isStopped) result = BuildPage(opened, index);
            long long firstId = 0;
            idTurns.InTurn(place, [&] { firstId = std::exchange(nextId, nextId + result.idCount); });
            const std::string text = MakeText(result, index, firstId);
            queue.InTurn(place, [&] { Finish(result, index, text); });
        }
    }

    int Finish()
    {
        progress.Stop();
        if (Interrupt::IsSet()) return ExitInterrupted;
        if (json && status != ExitNotWritten) {
            json->Write("],\n\"styles\":[]}\n");
            if (!json->Commit()) FailToWrite(options.out, json->GetFailure());
        }
        return status;
    }

private:
    /// Drops the tree of a page whose text does not fit into memory.
    std::string MakeText(PageResult& result, int index, long long firstId) const
    {
        if (!result.root || Interrupt::IsSet()) return {};
        try {
            if (options.format == Format::Svg) return MakeSvg(*result.page, *result.root, title, profiles);
            return MakePageJson(*result.page, index, *result.root, result.problems, firstId);
        } catch (const std::exception&) {
            result.root = nullptr;
            return {};
        }
    }

    /// In the order of the pages, one at a time.
    void Finish(const PageResult& result, int index, const std::string& text)
    {
        if (isStopped || Interrupt::IsSet()) {
            Stop();
            return;
        }
        PrintPageProblems(result, index);
        if (result.root) {
            Write(text, index);
        } else {
            status = ExitPageFailed;
        }
        missingCount = result.page ? 0 : missingCount + 1;
        if (missingCount == c_maxMissingPages) GiveUp();
        progress.Advance();
    }

    void PrintPageProblems(const PageResult& result, int index)
    {
        if (result.root && result.problems.empty()) return;
        const auto way = progress.MakeWay();
        PrintProblems(options.input, index + 1, result.problems);
        if (result.root || HasFatal(result.problems)) return;
        // A page that stands in the tree twice is found once, without a word; and the library has none for want of
        // memory.
        const Error::Type type = result.page ? Error::General : Error::PageTree;
        std::fprintf(stderr, "%s\n", FormatProblem(options.input.file, index + 1, type).c_str());
    }

    void GiveUp()
    {
        if (queue.HasMore()) {
            const auto way = progress.MakeWay();
            std::fprintf(stderr, "quillet: %s: %d pages in a row are missing; those behind them were not tried\n",
                         options.input.file.c_str(), c_maxMissingPages);
        }
        Stop();
    }

    void Write(const std::string& text, int index)
    {
        if (json) {
            json->Write(isFirst ? "" : ",\n");
            json->Write(text);
            isFirst = false;
            if (!json->IsGood()) FailToWrite(options.out, json->GetFailure());
            return;
        }
        const std::string name = isFileAPage ? MakePageFileName(options.out, index + 1) : options.out;
        OutputFile file(name);
        file.Write(text);
        if (!file.Commit()) FailToWrite(name, file.GetFailure());
    }

    void FailToWrite(const std::string& name, const std::string& reason)
    {
        const auto way = progress.MakeWay();
        std::fprintf(stderr, "quillet: %s: cannot be written: %s\n", name.c_str(), reason.c_str());
        status = ExitNotWritten;
        Stop();
    }

    void Stop()
    {
        isStopped = true;
        queue.Stop();
    }

    const ConvertOptions& options;
    PageRange range;
    PageQueue queue;
    /// Numbers are given out in the order of the pages too, but before the pages are written out as text.
    PageQueue idTurns{0, 0};
    Progress progress;
    std::string title;
    const Raster::ICCManager::ICCProfileSet profiles;
    std::unique_ptr<OutputFile> json;
    long long nextId = 0;
    std::atomic<bool> isStopped = false;
    bool isFileAPage = false;
    bool isFirst = true;
    int missingCount = 0;
    int status = ExitDone;
};

void ApplyOptions(PdfDocument& document, const ConvertOptions& options)
{
    document.SetTextFidelity(options.fidelity);
    document.SetIsGroupTextLines(options.isGroupTextLines);
    document.SetPageClipArea(options.clip);
    document.SetLanguageId(options.language);
}

} // namespace

int RunConvert(const ConvertOptions& options)
{
    Interrupt::Install();
    std::error_code error;
    if (!OutputFile::IsStream(options.out) && std::filesystem::equivalent(options.input.file, options.out, error)) {
        std::fprintf(stderr, "quillet: %s: is the document itself\n", options.out.c_str());
        return ExitCommandLine;
    }
    OpenedDocument opened(options.input);
    opened.AskForPassword();
    if (Interrupt::IsSet()) return ExitInterrupted;
    opened.PrintOpeningProblems();
    if (opened.status != ExitDone) return opened.status;
    ApplyOptions(*opened.document, options);

    const int pageCount = opened.document->GetPageCount();
    auto pages = PageRange::Parse(options.pages, pageCount);
    if (!pages) {
        std::fprintf(stderr, "quillet: --pages %s: no such pages; the document has %d\n", options.pages.c_str(),
                     pageCount);
        return ExitCommandLine;
    }
    if (pageCount == 0) std::fprintf(stderr, "quillet: %s: no pages\n", options.input.file.c_str());

    const auto workerCount = static_cast<int>(std::min<long long>(options.jobs, pages->GetLength()));
    Conversion conversion(options, *opened.document, std::move(*pages));
    // Each further worker has a document of its own: a document belongs to one thread.
    std::vector<std::thread> workers;
    for (int i = 1; i < workerCount; ++i) {
        workers.emplace_back([&] {
            OpenedDocument own(opened.input);
            if (own.status != ExitDone) return;
            ApplyOptions(*own.document, options);
            conversion.Run(own);
        });
    }
    conversion.Run(opened);
    for (std::thread& worker : workers)
        worker.join();
    return conversion.Finish();
}

} // namespace Host
