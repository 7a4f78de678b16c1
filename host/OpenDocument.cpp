#include "OpenDocument.h"

#include "Interrupt.h"
#include "PasswordPrompt.h"
#include "WriteAll.h"

#include <cstdio>
#include <utility>

namespace Host {

using namespace Quillet;

OpenedDocument::OpenedDocument(const InputOptions& options, Kernel::Counted<const Budget> account)
    : input(options), document(Kernel::MakeCounted<PdfDocument>())
{
    document->SetErrorHandler(&counter);
    document->SetAbortPointer(Interrupt::GetFlag());
    if (account) document->SetBudget(std::move(account));
    Open();
}

void OpenedDocument::Open()
{
    document->SetPassword(input.password);
    const bool isOpen = document->OpenFile(input.file);
    problems = counter.Take();
    status = isOpen ? ExitDone : ExitNotOpened;
    if (problems.contains(Error::Password) || (isOpen && IsWithheld())) status = ExitPassword;
}

bool OpenedDocument::IsWithheld() const
{
    // The permissions may keep a user from the object streams, and the page tree may lie in one.
    return document->GetDecryptLevel() == DecryptLevelUser && !document->HasUserPermissions() &&
           document->GetPageCount() == 0;
}

void OpenedDocument::AskForPassword()
{
    if (!input.password.empty() || !CanAskPassword()) return;
    for (int tries = 0; tries < 3 && status == ExitPassword && !Interrupt::IsSet(); ++tries) {
        if (tries > 0) std::fprintf(stderr, "The password does not fit.\n");
        const auto password = AskPassword(input.file);
        if (!password || password->empty()) return;
        input.password = *password;
        Open();
    }
}

void OpenedDocument::PrintOpeningProblems() const
{
    Problems others = problems;
    others.erase(Error::Password);
    PrintProblems(input, 0, others);
    if (status != ExitPassword) return;
    const char* words = problems.contains(Error::Password)
                            ? input.password.empty() ? "a password is needed" : "the password does not fit"
                            : "the owner's password is needed: a user may not have the pages";
    PrintLine("quillet: " + input.file + ": " + words + " (" + std::to_string(Error::Password) + ")");
}

void PrintProblems(const InputOptions& input, int page, const Problems& problems)
{
    for (const auto& [type, count] : problems) {
        if (input.isQuiet && ErrorHandler::IsRecoverable(type) && type != Error::CutShort) continue;
        PrintLine(FormatProblem(input.file, page, type, count));
    }
}

} // namespace Host
