#include "filters/RowPredictor.h"

#include "document/DecodeParams.h"
#include "document/Limits.h"

#include <algorithm>
#include <cstring>

namespace Quillet {

void RowPredictor::ReadLayout(const DecodeParams& params, int maxColors, int maxBitsPerComponent)
{
    colors = params.GetInt("Colors", 1);
    bitsPerComponent = params.GetInt("BitsPerComponent", 8);
    columns = params.GetInt("Columns", 1);
    const bool isPixelFine = colors >= 1 && colors <= maxColors && bitsPerComponent <= maxBitsPerComponent;
    if (!Check(isPixelFine && bitsPerComponent >= 1 && columns >= 1, Error::General)) return;
    const long long pixelBits = static_cast<long long>(colors) * bitsPerComponent;
    const long long pixelBytes = (pixelBits + 7) / 8;
    const long long size = (columns * pixelBits + 7) / 8 + pixelBytes;
    constexpr long long c_maxRow = Limits::c_maxBlock;
    if (!Check(size <= c_maxRow, Error::General)) return;

    bytesPerPixel = static_cast<int>(pixelBytes);
    rowSize = readPos = static_cast<int>(size);
    currentRow.assign(static_cast<std::size_t>(bytesPerPixel), 0);
}

int RowPredictor::Decode(char* buf, int size)
{
    int delivered = 0;
    while (delivered < size && rowSize != 0) {
        if (readPos == rowSize) {
            if (!ReadRow()) {
                rowSize = 0;
                break;
            }
            readPos = bytesPerPixel;
        }
        const int count = std::min(size - delivered, rowSize - readPos);
        std::memcpy(buf + delivered, currentRow.data() + readPos, static_cast<std::size_t>(count));
        delivered += count;
        readPos += count;
    }
    return delivered;
}

bool RowPredictor::FillRow(int offset)
{
    constexpr int c_step = 1 << 20;
    for (int pos = offset; pos < rowSize;) {
        const int size = std::min(c_step, rowSize - pos);
        const std::size_t end = static_cast<std::size_t>(pos) + static_cast<std::size_t>(size);
        if (currentRow.size() < end) currentRow.resize(end);
        if (source->Read(reinterpret_cast<char*>(currentRow.data()) + pos, size) < size) return false;
        pos += size;
    }
    return true;
}

} // namespace Quillet
