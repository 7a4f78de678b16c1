#pragma once

#include "document/Filter.h"

#include <array>

namespace Quillet {

/// Decodes byte runs. Takes no more of its source than the run that is asked for. Raises kind 12 for a run that is cut
/// off, and where the data outgrows what a stream may hold.
class QUILLET_API RunLengthFilter : public Filter
{
public:
    using Filter::Filter;

    int Decode(char* buf, int size) override;
    /// Whether the end marker was seen; without one in the data, a read of 0 bytes is the end.
    bool AtEnd() const override { return isFinished; }
    unsigned long long GetEstimatedLength() const override;

    std::array<char, 128> run{};
    /// Bytes of `run` not delivered yet, of `runLength` in all.
    int count = 0;
    int runLength = 0;
    bool isFinished = false;
    unsigned long long decodedLength = 0;

private:
    int ReadRun();
};

} // namespace Quillet
