#include "filters/RawFilter.h"

#include "document/Limits.h"

#include <Quillet/Budget.h>

#include <algorithm>

namespace Quillet {

RawFilter::RawFilter(Kernel::Counted<PdfSource> file, unsigned long long start, unsigned long long length,
                     const ErrorPlace& place)
    : rawSource(std::move(file)), pos(start), remaining(rawSource ? length : 0), errorPlace(place)
{}

int RawFilter::Decode(char* buf, int size)
{
    const auto wanted = static_cast<int>(std::min(remaining, static_cast<unsigned long long>(std::max(size, 0))));
    if (wanted == 0) return 0;
    const int count = rawSource->Read(pos, buf, wanted);
    pos += static_cast<unsigned long long>(count);
    remaining -= static_cast<unsigned long long>(count);
    return count;
}

void RawFilter::ReadAll(std::vector<char>& out)
{
    constexpr unsigned long long c_maxRead = 1 << 30;
    const auto wanted = static_cast<int>(std::min({GetEstimatedLength(), Limits::c_maxDecodedLength, c_maxRead}));
    if (!Budget::Spend(static_cast<unsigned>(wanted))) return;
    out.resize(static_cast<std::size_t>(wanted));
    const int count = Read(out.data(), wanted);
    out.resize(static_cast<std::size_t>(std::max(count, 0)));
}

unsigned long long RawFilter::GetEstimatedLength() const
{
    if (!rawSource) return 0;
    const unsigned long long total = rawSource->GetLength();
    return std::min(remaining, total > pos ? total - pos : 0);
}

int RawFilter::IncreaseLength(int more)
{
    if (!rawSource || more <= 0) return 0;
    const unsigned long long total = rawSource->GetLength();
    if (total <= remaining) return 0;
    const unsigned long long longer = std::min(total, remaining + static_cast<unsigned long long>(more));
    const auto granted = static_cast<int>(longer - remaining);
    remaining = longer;
    return granted;
}

} // namespace Quillet
