#include <Kernel/MemoryInStream.h>

#include <algorithm>

namespace Kernel {

int MemoryInStream::Read(char* buffer, int size)
{
    const std::size_t count = std::min(static_cast<std::size_t>(std::max(size, 0)), bytes.size() - position);
    std::copy_n(bytes.data() + position, count, buffer);
    position += count;
    return static_cast<int>(count);
}

} // namespace Kernel
