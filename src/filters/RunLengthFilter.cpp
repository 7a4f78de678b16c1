#include "filters/RunLengthFilter.h"

#include "document/Limits.h"

#include <algorithm>
#include <cstring>

namespace Quillet {

namespace {

constexpr int c_endOfData = 128;

} // namespace

int RunLengthFilter::Decode(char* buf, int size)
{
    int delivered = 0;
    while (delivered < size && (count > 0 || ReadRun() > 0)) {
        const int length = std::min(size - delivered, count);
        std::memcpy(buf + delivered, run.data() + (runLength - count), static_cast<std::size_t>(length));
        delivered += length;
        count -= length;
    }
    return delivered;
}

int RunLengthFilter::ReadRun()
{
    count = 0;
    if (isFinished) return 0;
    char byte = 0;
    if (source->Read(&byte, 1) < 1) return 0;
    const int length = static_cast<unsigned char>(byte);
    if (length == c_endOfData) {
        isFinished = true;
        return 0;
    }
    if (length > c_endOfData) {
        char repeated = 0;
        Check(source->Read(&repeated, 1) == 1, Error::General);
        count = 257 - length;
        std::memset(run.data(), repeated, static_cast<std::size_t>(count));
    } else {
        count = std::max(0, source->Read(run.data(), length + 1));
        Check(count == length + 1, Error::General);
    }
    decodedLength += static_cast<unsigned>(count);
    if (!Check(decodedLength <= Limits::c_maxDecodedLength, Error::General)) {
        isFinished = true;
        count = 0;
    }
    runLength = count;
    return count;
}

unsigned long long RunLengthFilter::GetEstimatedLength() const
{
    return source->GetEstimatedLength() + static_cast<unsigned>(count);
}

} // namespace Quillet
