#include "document/InStreamSource.h"

#include <algorithm>
#include <cstring>

namespace Quillet {

InStreamSource::InStreamSource(Kernel::InStream& hostStream)
    : stream(hostStream), bytes(static_cast<std::size_t>(std::max(hostStream.GetLength(), 0ll)))
{}

unsigned long long InStreamSource::GetLength() const
{
    return bytes.size();
}

bool InStreamSource::AtEnd() const
{
    return stream.AtEnd();
}

int InStreamSource::Read(unsigned long long pos, char* buf, int count)
{
    const unsigned long long start = pos + baseOffset;
    if (!Check(start >= pos && start <= bytes.size(), Error::FileOp)) return 0;
    const unsigned long long wanted =
        std::min(bytes.size() - start, static_cast<unsigned long long>(std::max(count, 0)));
    if (wanted == 0) return 0;
    while (filled < start + wanted) {
        constexpr unsigned long long c_maxRead = 1 << 30;
        const int got =
            stream.Read(bytes.data() + filled, static_cast<int>(std::min(start + wanted - filled, c_maxRead)));
        if (!Check(got >= 1, Error::FileOp)) return 0;
        filled += static_cast<unsigned long long>(got);
    }
    std::memcpy(buf, bytes.data() + start, wanted);
    return static_cast<int>(wanted);
}

} // namespace Quillet
