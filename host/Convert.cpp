#include "Convert.h"

#include "Guarded.h"
#include "Interrupt.h"
#include "OpenDocument.h"
#include "OutputFile.h"
#include "PageNames.h"
#include "PageQueue.h"
#include "PageRange.h"
#include "Progress.h"
#include "StyleNames.h"
#include "WriteAll.h"
#include "exporters/Costs.h"
#include "exporters/Format.h"

#include <Quillet/Budget.h>
#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>

#include <algorithm>
#include <atomic>
#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace Host {

namespace {

using namespace Quillet;

/// What a worker makes of one page.
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

/// A page while a worker has it.
struct PageTree
{
    Kernel::Counted<const Page> page;
    Kernel::Counted<GroupObject> root;
};

PageTree BuildPage(const PdfDocument& document, int index, bool isRaw)
{
    PageTree tree;
    tree.page = document.GetPage(index);
    document.SetPage(index);
    if (tree.page) tree.root = tree.page->BuildObjects();
    if (!tree.root) return tree;
    if (isRaw) {
        tree.root->UpdateBBoxes();
        return tree;
    }
    const auto size = PageBase::ApplyRotate(tree.page->GetTrimBox(), tree.page->GetRotate());
    tree.root->Reduce({0, 0, size.GetWidth(), size.GetHeight()});
    return tree;
}

class Conversion
{
public:
    Conversion(const ConvertOptions& usedOptions, PageRange pageRange, bool hasFileAPage)
        : options(usedOptions), range(std::move(pageRange)), isFileAPage(hasFileAPage),
          queue(range.GetLength(), usedOptions.jobs + 2), progress(!options.input.isQuiet, range.GetLength())
    {}

    /// Writes what stands before the pages.
    void Begin(OpenedDocument& opened)
    {
        std::error_code error;
        if (std::filesystem::is_directory(options.out, error)) {
            FailToWrite(options.out, std::make_error_code(std::errc::is_a_directory).message());
            return;
        }
        LongText text;
        bool isCut = false;
        {
            const Budget::Scope scope = opened.document->OpenScope(Budget::Share::All);
            profiles = opened.document->GetICCProfiles(-1);
            title = opened.document->GetTitle();
            if (options.format->makeHead) text = options.format->makeHead(*opened.document);
            isCut = Budget::IsSpent();
        }
        isCut = opened.counter.TakeCutShort() || isCut;
        if (isCut && !Interrupt::IsSet()) TellCutShort();
        if (options.format->isFileAPage) return;
        whole = std::make_unique<OutputFile>(options.out);
        whole->Write(text);
        if (!whole->IsGood()) FailToWrite(options.out, whole->GetFailure());
    }

    /// Works on pages until there are no more.
    void Run(OpenedDocument& opened)
    {
        for (long long place; (place = queue.TakePlace()) >= 0;) {
            const int index = range.GetIndex(place);
            const PageResult result = MakePage(opened, place, index);
            queue.InTurn(place, [&] {
                const Outcome outcome = Guarded([&] { Finish(result, index); });
                if (!outcome.IsDone()) FailToWrite(options.out, outcome.failure);
            });
        }
    }

    /// Writes what stands behind the pages.
    int Finish(const PdfDocument& document)
    {
        progress.Stop();
        if (Interrupt::IsSet()) return ExitInterrupted;
        if (whole && status != ExitNotWritten) {
            if (options.format->makeTail) whole->Write(MakeTail(document));
            if (!whole->Commit()) FailToWrite(options.out, whole->GetFailure());
        }
        return Interrupt::IsSet() ? ExitInterrupted : status;
    }

private:
    /// Takes the page's turn among the numbers whatever happens; others wait for theirs.
    PageResult MakePage(OpenedDocument& opened, long long place, int index)
    {
        PageResult result;
        const PdfDocument& document = *opened.document;
        // Numbers depend on the page alone, and not on the pages that this document happened to build before.
        document.SetNextObjectId(0);
        const Budget::Scope scope = document.OpenScope(Budget::Share::Page);
        result.isUnpaid = !Budget::Spend(Costs::c_page);
        PageTree tree;
        if (!isStopped && !result.isUnpaid) tree = MakeTree(document, index, result);
        result.isFound = tree.page != nullptr;
        result.problems = opened.counter.Take();
        long long firstId = 0;
        StyleNames::Names styleNames;
        idTurns.InTurn(place, [&] {
            firstId = std::exchange(nextId, nextId + document.GetNextObjectId());
            // Whatever is thrown, the page has to have its turn in the file too.
            const Outcome outcome = Guarded([&] {
                if (tree.root) styleNames = styles.Add(*tree.root);
            });
            if (outcome.IsDone()) return;
            tree.root = nullptr;
            result.isOutOfMemory = outcome.type == Error::None;
        });
        if (tree.root && !Interrupt::IsSet()) MakeText(result, tree, {index, firstId, styleNames});
        return result;
    }

    PageTree MakeTree(const PdfDocument& document, int index, PageResult& result) const
    {
        PageTree tree;
        const Outcome outcome = Guarded([&] { tree = BuildPage(document, index, options.isRaw); });
        // The next page may need less.
        result.isOutOfMemory = !outcome.IsDone() && outcome.type == Error::None;
        return tree;
    }

    /// What a page, and what is on it, is called by in the file.
    struct PageNumbers
    {
        int index;
        long long firstId;
        const StyleNames::Names& styleNames;
    };

    void MakeText(PageResult& result, const PageTree& tree, const PageNumbers& numbers) const
    {
        const Outcome outcome = Guarded([&] {
            result.text = options.format->makePage({*tree.page, numbers.index, *tree.root, result.problems,
                                                    numbers.firstId, numbers.styleNames, title, profiles});
        });
        if (outcome.IsDone()) return;
        result.text = std::nullopt;
        result.isOutOfMemory = outcome.type == Error::None;
    }

    LongText MakeTail(const PdfDocument& document) const
    {
        const Budget::Scope scope = document.OpenScope(Budget::Share::All);
        return options.format->makeTail(styles.GetSheet());
    }

    /// In the order of the pages, one at a time.
    void Finish(const PageResult& result, int index)
    {
        if (isStopped || Interrupt::IsSet()) {
            Stop();
            return;
        }
        if (result.isUnpaid) {
            TellCutShort();
            Stop();
            return;
        }
        if (!result.text || result.problems.contains(Error::CutShort)) status = ExitPageFailed;
        PrintPageProblems(result, index);
        if (result.text) Write(*result.text, index);
        missingCount = result.isFound ? 0 : missingCount + 1;
        if (missingCount == c_maxMissingPages) GiveUp();
        progress.Advance();
    }

    void PrintPageProblems(const PageResult& result, int index)
    {
        if (result.text && result.problems.empty()) return;
        const auto way = progress.MakeWay();
        PrintProblems(options.input, index + 1, result.problems);
        if (result.isOutOfMemory) PrintLine(FormatProblem(options.input.file, index + 1, "out of memory"));
        const bool isTold = HasFatal(result.problems) || result.problems.contains(Error::CutShort);
        if (result.text || result.isOutOfMemory || isTold) return;
        // A page that stands in the tree twice is found once, without a word.
        PrintLine(FormatProblem(options.input.file, index + 1, result.isFound ? Error::General : Error::PageTree));
    }

    /// Once: of the document as a whole.
    void TellCutShort()
    {
        status = ExitPageFailed;
        if (std::exchange(isCutShort, true)) return;
        const auto way = progress.MakeWay();
        PrintLine(FormatProblem(options.input.file, 0, Error::CutShort));
    }

    void GiveUp()
    {
        if (queue.HasMore()) {
            const auto way = progress.MakeWay();
            PrintLine("quillet: " + options.input.file + ": " + std::to_string(c_maxMissingPages) +
                      " pages in a row are missing; those behind them were not tried");
        }
        Stop();
    }

    void Write(const LongText& text, int index)
    {
        if (whole) {
            whole->Write(isFirst ? std::string_view() : options.format->separator);
            whole->Write(text);
            isFirst = false;
            if (!whole->IsGood()) FailToWrite(options.out, whole->GetFailure());
            return;
        }
        const std::string name = isFileAPage ? MakePageName(options.out, index + 1) : options.out;
        OutputFile file(name);
        file.Write(text);
        if (!file.Commit()) FailToWrite(name, file.GetFailure());
    }

    void FailToWrite(const std::string& name, const std::string& reason)
    {
        Stop();
        // A signal makes writing fail as well, and is told by the status.
        if (Interrupt::IsSet()) return;
        status = ExitNotWritten;
        const auto way = progress.MakeWay();
        PrintLine("quillet: " + name + ": cannot be written: " + reason);
    }

    void Stop()
    {
        isStopped = true;
        queue.Stop();
    }

    const ConvertOptions& options;
    PageRange range;
    const bool isFileAPage;
    PageQueue queue;
    /// Numbers are given out in the order of the pages too, but before the pages are written out as text.
    PageQueue idTurns{0, 0};
    Progress progress;
    std::string title;
    Raster::ICCManager::ICCProfileSet profiles;
    /// The file that all pages go to, if there is one.
    std::unique_ptr<OutputFile> whole;
    long long nextId = 0;
    StyleNames styles;
    std::atomic<bool> isStopped = false;
    bool isFirst = true;
    bool isCutShort = false;
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
