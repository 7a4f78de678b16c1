#pragma once

#include <Kernel/Export.h>

namespace Kernel {

/// A stream of bytes that a host brings, read once, from its start to its end.
///
/// A document reads as far as it needs, on the thread that works on it: while it is opened, and later while pages are
/// read. The stream stays the host's.
class QUILLET_API InStream
{
public:
    InStream() = default;
    InStream(const InStream&) = delete;
    InStream& operator=(const InStream&) = delete;
    virtual ~InStream() = default;

    /// All bytes of the stream, those read before included.
    virtual long long GetLength() const = 0;

    virtual bool AtEnd() const = 0;

    /// Copies up to `size` bytes and says how many. Fewer than asked for is no fault; less than 1 means the end or a
    /// fault.
    virtual int Read(char* buffer, int size) = 0;
};

} // namespace Kernel
