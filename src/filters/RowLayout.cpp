#include "filters/RowLayout.h"

#include "document/Limits.h"
#include "document/Filter.h"

#include <algorithm>
#include <climits>

namespace Quillet {

RowLayout MeasureRow(int colours, int bitsPerComponent, int columns)
{
    if (colours < 1 || bitsPerComponent < 1 || columns < 1) return {};
    constexpr long long c_maxRow = Limits::c_maxBlock;
    const long long pixelBits = static_cast<long long>(colours) * bitsPerComponent;
    const long long bytesPerPixel = (pixelBits + 7) / 8;
    // A pixel of more bits than that makes the row too large by itself, and would overflow the product.
    if (pixelBits > INT_MAX) return {};
    const long long rowSize = (columns * pixelBits + 7) / 8 + bytesPerPixel;
    if (rowSize > c_maxRow) return {};
    return {static_cast<int>(bytesPerPixel), static_cast<int>(rowSize)};
}

bool ReadRowBytes(Filter& source, std::vector<unsigned char>& row, int offset, int rowSize)
{
    constexpr int c_step = 1 << 20;
    for (int pos = offset; pos < rowSize;) {
        const int size = std::min(c_step, rowSize - pos);
        const std::size_t end = static_cast<std::size_t>(pos) + static_cast<std::size_t>(size);
        if (row.size() < end) row.resize(end);
        if (source.Read(reinterpret_cast<char*>(row.data()) + pos, size) < size) return false;
        pos += size;
    }
    return true;
}

} // namespace Quillet
