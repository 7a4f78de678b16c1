#include "document/ObjectSubSource.h"

#include <algorithm>

namespace Quillet {

int ObjectSubSource::Read(unsigned long long pos, char* buf, int size)
{
    // Position 0 wraps round to far beyond the end.
    const unsigned long long offset = pos - 1;
    if (offset >= length || size <= 0) return 0;
    const int count = static_cast<int>(std::min(length - offset, static_cast<unsigned long long>(size)));
    parent->UncheckedRead(start + offset, buf, count);
    return count;
}

} // namespace Quillet
