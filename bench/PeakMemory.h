#pragma once

namespace Quillet {

/// How much memory a piece of work takes at its worst, beyond what the process held before.
///
///     PeakMemory peak;
///     work();
///     state.counters["peakMB"] = peak.GetMegabytes();
///
/// Only Linux tells; elsewhere the answer is 0. Benchmarks that run many rounds measure one round more for it.
class PeakMemory
{
public:
    PeakMemory();
    double GetMegabytes() const;

private:
    long long start;
};

} // namespace Quillet
