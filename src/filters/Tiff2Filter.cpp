#include "filters/Tiff2Filter.h"

#include "document/DecodeParams.h"
#include "filters/RowLayout.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace Quillet {

namespace {

constexpr int c_maxColors = 19;

} // namespace

void Tiff2Filter::SetDecodeParams(Kernel::Counted<const DecodeParams> params)
{
    rowSize = 0;
    colors = params->GetInt("Colors", 1);
    if (!Check(colors >= 1 && colors <= c_maxColors, Error::General)) return;
    bitsPerComponent = params->GetInt("BitsPerComponent", 8);
    if (!Check(bitsPerComponent <= 8, Error::General)) return;
    columns = params->GetInt("Columns", 1);
    if (!Check(columns != 0, Error::General)) return;
    const RowLayout layout = MeasureRow(colors, bitsPerComponent, columns);
    if (!Check(layout.rowSize != 0, Error::General)) return;

    bytesPerPixel = layout.bytesPerPixel;
    rowSize = readPos = layout.rowSize;
    row.assign(static_cast<std::size_t>(bytesPerPixel), 0);
}

bool Tiff2Filter::ReadRow()
{
    if (!ReadRowBytes(*source, row, bytesPerPixel, rowSize)) return false;
    if (bitsPerComponent == 8) {
        UndoBytes();
    } else {
        UndoBits();
    }
    readPos = bytesPerPixel;
    return true;
}

void Tiff2Filter::UndoBytes()
{
    unsigned char* data = row.data();
    for (int i = bytesPerPixel; i < rowSize; ++i) {
        data[i] = static_cast<unsigned char>(data[i] + data[i - bytesPerPixel]);
    }
}

void Tiff2Filter::UndoBits()
{
    const int width = bitsPerComponent;
    const unsigned mask = (1u << width) - 1;
    std::array<unsigned, c_maxColors> sums{};
    const unsigned char* from = row.data() + bytesPerPixel;
    unsigned char* to = row.data() + bytesPerPixel;
    unsigned inBits = 0;
    unsigned outBits = 0;
    int inCount = 0;
    int outCount = 0;
    for (int column = 0; column < columns; ++column) {
        for (int component = 0; component < colors; ++component) {
            if (inCount < width) {
                inBits = inBits << 8 | *from++;
                inCount += 8;
            }
            inCount -= width;
            unsigned& sum = sums[static_cast<unsigned>(component)];
            sum = (sum + (inBits >> inCount)) & mask;
            outBits = outBits << width | sum;
            outCount += width;
            if (outCount >= 8) {
                outCount -= 8;
                *to++ = static_cast<unsigned char>(outBits >> outCount);
            }
        }
    }
    if (outCount > 0) *to = static_cast<unsigned char>(outBits << (8 - outCount));
}

int Tiff2Filter::Decode(char* buf, int size)
{
    int delivered = 0;
    while (delivered < size && rowSize != 0) {
        if (readPos == rowSize && !ReadRow()) {
            rowSize = 0;
            break;
        }
        const int count = std::min(size - delivered, rowSize - readPos);
        std::memcpy(buf + delivered, row.data() + readPos, static_cast<std::size_t>(count));
        delivered += count;
        readPos += count;
    }
    return delivered;
}

unsigned long long Tiff2Filter::GetEstimatedLength() const
{
    return source->GetEstimatedLength() * 4 + static_cast<unsigned>(rowSize);
}

} // namespace Quillet
