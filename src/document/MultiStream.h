#pragma once

#include "filters/Stream.h"

#include <vector>

namespace Quillet {

/// Streams in a row, one blank between two, so that no token spans a joint.
class QUILLET_API MultiStream : public SequentialSource
{
public:
    MultiStream(const ErrorHandler* errorHandler, const std::vector<Ref>& refs);

    /// A plain stream for exactly one reference, else a joined one.
    static Kernel::Counted<SequentialSource> Make(const ErrorHandler* handler, const std::vector<Ref>& refs);

    bool AtEnd() const override { return current >= streams.size(); }
    unsigned long long GetEstimatedLength() const override;
    int Read(char* buf, int size) override;
    using SequentialSource::Read;

    std::vector<Kernel::Counted<Stream>> streams;
    unsigned long long current = 0;
};

} // namespace Quillet
