#pragma once

#include "ExitStatus.h"

#include <Quillet/Error.h>

#include <exception>
#include <functional>
#include <string>

namespace Host {

/// How a piece of work ended.
struct Outcome
{
    /// What ended it before its time, in words; null if nothing did.
    const char* failure = nullptr;
    /// The fatal kind, which the document's handler has counted; `None` for other failures.
    Quillet::Error::Type type = Quillet::Error::None;

    bool IsDone() const { return !failure; }
};

/// Runs `work` and lets nothing through.
template <typename Work>
Outcome Guarded(Work work)
{
    try {
        work();
        return {};
    } catch (Quillet::Error::Type type) {
        return {Quillet::GetErrorName(type), type};
    } catch (const std::exception&) {
        // What the standard library throws at us: no memory, a length that no memory has, no more threads.
        return {"out of memory"};
    }
}

/// Prints what ended the work on a file; for this it needs no memory.
void PrintFailure(const std::string& file, const Outcome& outcome);

/// Runs the work of a verb on a file and gives its exit status. Whatever is thrown becomes a line, and the
/// status that the work has put into `stage` by then: at first, that the file was not opened.
int RunVerb(const std::string& file, const std::function<int(ExitStatus& stage)>& work);

} // namespace Host
