#pragma once

namespace Quillet {

/// How much memory a piece of work holds at its worst, counted at every `new`; one measurement at a time.
///
///     const PeakMemory peak;
///     work();
///     state.counters["peakMB"] = peak.GetMegabytes();
///
/// Counting slows the work down, so it stays outside of what is timed.
class PeakMemory
{
public:
    PeakMemory();
    ~PeakMemory();
    PeakMemory(const PeakMemory&) = delete;
    PeakMemory& operator=(const PeakMemory&) = delete;

    double GetMegabytes() const;
};

} // namespace Quillet
