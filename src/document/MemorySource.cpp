#include "document/MemorySource.h"

#include <algorithm>
#include <cstring>

namespace Quillet {

int MemorySource::Read(unsigned long long pos, char* buf, int count)
{
    if (!Check(pos <= size, Error::FileOp)) return 0;
    const unsigned long long copied = std::min(size - pos, static_cast<unsigned long long>(std::max(count, 0)));
    if (copied > 0) std::memcpy(buf, data + pos, copied);
    return static_cast<int>(copied);
}

} // namespace Quillet
