#include "Guarded.h"

#include "Interrupt.h"
#include "WriteAll.h"

#include <algorithm>
#include <climits>
#include <cstdio>

#include <unistd.h>

namespace Host {

void PrintFailure(const std::string& file, const Outcome& outcome)
{
    char line[PATH_MAX + 128];
    const bool hasKind = outcome.type != Quillet::Error::None;
    const char* form = hasKind ? "quillet: %.*s: %s (%d)\n" : "quillet: %.*s: %s\n";
    const int length = std::snprintf(line, sizeof line, form, PATH_MAX, file.c_str(), outcome.failure, outcome.type);
    WriteAll(STDERR_FILENO, {line, static_cast<std::size_t>(std::max(length, 0))});
}

int RunVerb(const std::string& file, const std::function<int(ExitStatus& stage)>& work)
{
    ExitStatus stage = ExitNotOpened;
    int status = ExitDone;
    const Outcome outcome = Guarded([&] { status = work(stage); });
    if (outcome.IsDone()) return status;
    if (Interrupt::IsSet()) return ExitInterrupted;
    PrintFailure(file, outcome);
    return stage;
}

} // namespace Host
