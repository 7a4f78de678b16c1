#pragma once

#include "filters/Stream.h"

#include <vector>

namespace Quillet {

/// Streams of operators in a row, one blank between two, so that no token spans a joint. Each is opened when it is
/// reached.
class QUILLET_API MultiStream : public SequentialSource
{
public:
    MultiStream(const ErrorHandler* errorHandler, std::vector<Ref> refs);

    /// A plain stream for exactly one reference, else a joined one.
    static Kernel::Counted<SequentialSource> Make(const ErrorHandler* handler, const std::vector<Ref>& refs);

    /// That of the stream that was opened last.
    ErrorPlace GetErrorPlace() const override { return errorPlace; }
    bool AtEnd() const override { return current >= refs.size(); }
    /// What is left of the stream that is being read: the others are not known yet.
    unsigned long long GetEstimatedLength() const override;
    int Read(char* buf, int size) override;
    using SequentialSource::Read;

    std::vector<Ref> refs;
    unsigned long long current = 0;
    /// Null between two.
    Kernel::Counted<Stream> stream;

private:
    ErrorPlace errorPlace;
};

} // namespace Quillet
