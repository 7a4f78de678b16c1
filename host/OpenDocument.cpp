#include "OpenDocument.h"

#include "Interrupt.h"

#include <cstdio>
#include <exception>

namespace Host {

using namespace Quillet;

OpenedDocument::OpenedDocument(const InputOptions& input)
    : document(Kernel::MakeCounted<PdfDocument>()), status(ExitNotOpened)
{
    document->SetErrorHandler(&counter);
    document->SetAbortPointer(Interrupt::GetFlag());
    document->SetPassword(input.password);
    bool isOpen = false;
    try {
        isOpen = document->OpenFile(input.file);
    } catch (const std::exception&) {
        counter.counts[Error::General] = 1;
    }
    problems = counter.Take();
    if (problems.contains(Error::Password)) {
        status = ExitPassword;
    } else if (isOpen) {
        status = ExitDone;
    }
}

void PrintProblems(const InputOptions& input, int page, const Problems& problems)
{
    for (const auto& [type, count] : problems) {
        const bool isFatal = !ErrorHandler::IsRecoverable(type) || type == Error::Password;
        if (input.isQuiet && !isFatal) continue;
        std::fprintf(stderr, "%s\n", FormatProblem(input.file, page, type, count).c_str());
    }
}

} // namespace Host
