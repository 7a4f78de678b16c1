#include "filters/PngFilter.h"

#include "document/DecodeParams.h"

#include <cstdlib>
#include <utility>

namespace Quillet {

namespace {

// The steps below are in terms of whole rows: `row` and `above` point at the first byte of data, and the `pixel` bytes
// ahead of both are 0.

void UndoSub(unsigned char* row, int pixel, int size)
{
    for (int i = 0; i < size; ++i)
        row[i] = static_cast<unsigned char>(row[i] + row[i - pixel]);
}

void UndoUp(unsigned char* __restrict row, const unsigned char* __restrict above, int size)
{
    for (int i = 0; i < size; ++i)
        row[i] = static_cast<unsigned char>(row[i] + above[i]);
}

void UndoAverage(unsigned char* row, const unsigned char* above, int pixel, int size)
{
    for (int i = 0; i < size; ++i)
        row[i] = static_cast<unsigned char>(row[i] + ((row[i - pixel] + above[i]) >> 1));
}

/// The neighbour nearest to left + above - aboveLeft; of equals the first in this order. Chosen by masks, since which
/// one it is cannot be predicted in a photograph, and branches would cost more than twice as much.
inline int PickPaeth(int left, int above, int aboveLeft)
{
    const int toLeft = std::abs(above - aboveLeft);
    const int toAbove = std::abs(left - aboveLeft);
    const int toAboveLeft = std::abs(left + above - 2 * aboveLeft);
    const int isAbove = -static_cast<int>(toAbove <= toAboveLeft);
    const int isLeft = -(static_cast<int>(toLeft <= toAbove) & static_cast<int>(toLeft <= toAboveLeft));
    const int other = (above & isAbove) | (aboveLeft & ~isAbove);
    return (left & isLeft) | (other & ~isLeft);
}

void UndoPaeth(unsigned char* row, const unsigned char* above, int pixel, int size)
{
    for (int i = 0; i < size; ++i) {
        row[i] = static_cast<unsigned char>(row[i] + PickPaeth(row[i - pixel], above[i], above[i - pixel]));
    }
}

} // namespace

void PngFilter::SetDecodeParams(Kernel::Counted<const DecodeParams> params)
{
    const int predictor = params->GetInt("Predictor", 1);
    if (!Check(predictor >= 10 && predictor <= 15, Error::General)) return;
    ReadLayout(*params, 4, 32);
    previousRow = currentRow;
}

bool PngFilter::ReadRow()
{
    std::swap(currentRow, previousRow);
    // The tag lands on the last byte ahead of the row.
    if (!FillRow(bytesPerPixel - 1)) return false;
    previousRow.resize(static_cast<std::size_t>(rowSize));
    unsigned char* row = currentRow.data() + bytesPerPixel;
    const unsigned char* above = previousRow.data() + bytesPerPixel;
    const int size = rowSize - bytesPerPixel;
    const int tag = std::exchange(row[-1], static_cast<unsigned char>(0));
    switch (tag) {
    case 0:
        break;
    case 1:
        UndoSub(row, bytesPerPixel, size);
        break;
    case 2:
        UndoUp(row, above, size);
        break;
    case 3:
        UndoAverage(row, above, bytesPerPixel, size);
        break;
    case 4:
        UndoPaeth(row, above, bytesPerPixel, size);
        break;
    default:
        OnError(Error::General);
        return false;
    }
    return true;
}

unsigned long long PngFilter::GetEstimatedLength() const
{
    return source->GetEstimatedLength() * 5 + static_cast<unsigned>(rowSize);
}

} // namespace Quillet
