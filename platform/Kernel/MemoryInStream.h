#pragma once

#include <Kernel/InStream.h>

#include <cstddef>
#include <string_view>

namespace Kernel {

/// A stream over bytes in memory, which stay the caller's and outlive it.
class QUILLET_API MemoryInStream : public InStream
{
public:
    explicit MemoryInStream(std::string_view content) : bytes(content) {}

    long long GetLength() const override { return static_cast<long long>(bytes.size()); }
    bool AtEnd() const override { return position == bytes.size(); }
    int Read(char* buffer, int size) override;

private:
    std::string_view bytes;
    std::size_t position = 0;
};

} // namespace Kernel
