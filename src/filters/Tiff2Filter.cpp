#include "filters/Tiff2Filter.h"

#include "document/DecodeParams.h"

#include <array>

namespace Quillet {

namespace {

constexpr int c_maxColors = 19;

} // namespace

void Tiff2Filter::SetDecodeParams(Kernel::Counted<const DecodeParams> params)
{
    ReadLayout(*params, c_maxColors, 8);
}

bool Tiff2Filter::ReadRow()
{
    if (!FillRow(bytesPerPixel)) return false;
    if (bitsPerComponent == 8) {
        UndoBytes();
    } else {
        UndoBits();
    }
    return true;
}

void Tiff2Filter::UndoBytes()
{
    unsigned char* data = currentRow.data();
    for (int i = bytesPerPixel; i < rowSize; ++i) {
        data[i] = static_cast<unsigned char>(data[i] + data[i - bytesPerPixel]);
    }
}

void Tiff2Filter::UndoBits()
{
    const int width = bitsPerComponent;
    const unsigned mask = (1u << width) - 1;
    std::array<unsigned, c_maxColors> sums{};
    const unsigned char* from = currentRow.data() + bytesPerPixel;
    unsigned char* to = currentRow.data() + bytesPerPixel;
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

unsigned long long Tiff2Filter::GetEstimatedLength() const
{
    return source->GetEstimatedLength() * 4 + static_cast<unsigned>(rowSize);
}

} // namespace Quillet
