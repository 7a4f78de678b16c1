#include "document/SequentialSource.h"

#include "document/Limits.h"

#include <Quillet/Budget.h>

#include <algorithm>

namespace Quillet {

int SequentialSource::Read(unsigned long long, char* buf, int size)
{
    return Read(buf, size);
}

std::size_t SequentialSource::ReadUpTo(char* buf, std::size_t size)
{
    std::size_t length = 0;
    while (length < size) {
        const int count = Read(buf + length, static_cast<int>(size - length));
        if (count <= 0) break;
        length += static_cast<std::size_t>(count);
    }
    return length;
}

void SequentialSource::ReadAll(std::vector<char>& out)
{
    AppendAll(out, Limits::c_maxDecodedLength);
}

void SequentialSource::AppendAll(std::vector<char>& out, unsigned long long maxLength)
{
    constexpr int c_step = 4096;
    constexpr unsigned long long c_maxReserve = 1ull << 20;
    // The estimate comes from the file: it saves small growths and may not cost more than a little memory.
    out.reserve(out.size() + static_cast<std::size_t>(std::min(GetEstimatedLength(), c_maxReserve)));
    int count = c_step;
    while (count == c_step && out.size() < maxLength && Budget::Spend(c_step)) {
        const std::size_t end = out.size();
        out.resize(end + c_step);
        count = std::max(Read(out.data() + end, c_step), 0);
        out.resize(end + static_cast<std::size_t>(count));
    }
}

} // namespace Quillet
