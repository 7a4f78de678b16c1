#include "Conversion.h"

#include "Guarded.h"
#include "Interrupt.h"
#include "WriteAll.h"
#include "exporters/Format.h"

#include <Quillet/Budget.h>

#include <string>
#include <utility>

namespace Host {

using namespace Quillet;

Conversion::Conversion(const ConvertOptions& usedOptions, PageRange pageRange, bool isFileAPage)
    : options(usedOptions), range(std::move(pageRange)), queue(range.GetLength(), usedOptions.jobs + 2),
      maker(usedOptions), output(usedOptions, isFileAPage), progress(!options.input.isQuiet, range.GetLength())
{}

void Conversion::Begin(OpenedDocument& opened)
{
    StopAt(output.CheckPlace());
    if (isStopped) return;
    LongText head;
    bool isCut = false;
    {
        const Budget::Scope scope = opened.document->OpenScope(Budget::Share::All);
        maker.Begin(*opened.document);
        if (options.format->makeHead) head = options.format->makeHead(*opened.document);
        isCut = Budget::IsSpent();
    }
    isCut = opened.counter.TakeCutShort() || isCut;
    if (isCut && !Interrupt::IsSet()) TellCutShort();
    StopAt(output.Begin(head));
}

void Conversion::Run(OpenedDocument& opened)
{
    for (long long place; (place = queue.TakePlace()) >= 0;) {
        const int index = range.GetIndex(place);
        const PageResult result = isStopped ? maker.Skip(place) : maker.Make(opened, place, index);
        queue.InTurn(place, [&] {
            const Outcome outcome = Guarded([&] { Finish(result, index); });
            if (!outcome.IsDone()) StopAt(WriteFailure{options.out, outcome.failure});
        });
    }
}

int Conversion::Finish(const PdfDocument& document)
{
    progress.Stop();
    if (!Interrupt::IsSet() && status != ExitNotWritten) StopAt(output.End(maker.MakeTail(document)));
    return Interrupt::IsSet() ? ExitInterrupted : status;
}

void Conversion::Finish(const PageResult& result, int index)
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
    if (result.text) StopAt(output.Write(*result.text, index));
    missingCount = result.isFound ? 0 : missingCount + 1;
    if (missingCount == c_maxMissingPages) GiveUp();
    progress.Advance();
}

void Conversion::PrintPageProblems(const PageResult& result, int index)
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

void Conversion::TellCutShort()
{
    status = ExitPageFailed;
    if (std::exchange(isCutShort, true)) return;
    const auto way = progress.MakeWay();
    PrintLine(FormatProblem(options.input.file, 0, Error::CutShort));
}

void Conversion::GiveUp()
{
    if (queue.HasMore()) {
        const auto way = progress.MakeWay();
        PrintLine("quillet: " + options.input.file + ": " + std::to_string(c_maxMissingPages) +
                  " pages in a row are missing; those behind them were not tried");
    }
    Stop();
}

void Conversion::StopAt(const std::optional<WriteFailure>& failure)
{
    if (!failure) return;
    Stop();
    // A signal makes writing fail as well, and is told by the status.
    if (Interrupt::IsSet()) return;
    status = ExitNotWritten;
    const auto way = progress.MakeWay();
    PrintLine("quillet: " + failure->name + ": cannot be written: " + failure->reason);
}

void Conversion::Stop()
{
    isStopped = true;
    queue.Stop();
}

} // namespace Host
