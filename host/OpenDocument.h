#pragma once

#include "ExitStatus.h"
#include "Options.h"
#include "Problems.h"

#include <Quillet/PdfDocument.h>

#include <Kernel/Counted.h>

#include <string>

namespace Host {

/// A claim of pages that the file does not have ends the run after this many in a row: a page count is only a number in
/// the file, and may be billions.
constexpr int c_maxMissingPages = 100;

/// A document on its way through the command, with a handler that counts its faults.
struct OpenedDocument
{
    /// Opens it; `status` tells whether that went well, and `problems` what was found.
    /// `account` is that of the same file, opened for another thread; null for one of its own.
    explicit OpenedDocument(const InputOptions& input, Kernel::Counted<const Quillet::Budget> account = nullptr);

    /// Asks the user, if there is one, for the password that the command line lacks; three times at most.
    void AskForPassword();
    /// Prints what was found while opening: the fatal kind, and the others unless the user wants quiet.
    void PrintOpeningProblems() const;

    /// With the password that was tried last.
    InputOptions input;
    ProblemCounter counter;
    Kernel::Counted<Quillet::PdfDocument> document;
    ExitStatus status = ExitNotOpened;
    Problems problems;

private:
    void Open();
    bool IsWithheld() const;
};

/// Prints what was found on a page, from 1, like `PrintOpeningProblems`; or on the document, for page 0. Whoever wants
/// quiet hears all the same of what is missing.
void PrintProblems(const InputOptions& input, int page, const Problems& problems);

} // namespace Host
