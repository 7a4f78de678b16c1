#pragma once

#include <Kernel/Export.h>

#include <vector>

namespace Quillet {

class Filter;

/// How a predictor keeps a row: the bytes of one pixel, which stay 0 and stand for the pixel left of the first, and
/// behind them the row's data.
struct RowLayout
{
    int bytesPerPixel = 0;
    /// With the pixel ahead of the row; 0 for a row without bits, or beyond what a stream may hold.
    int rowSize = 0;
};

RowLayout MeasureRow(int colours, int bitsPerComponent, int columns);

/// Fills `row` from `offset` to its full size `rowSize`; false if the source gives less. The row grows only as data
/// comes, so that a small file which speaks of wide rows stays small.
bool ReadRowBytes(Filter& source, std::vector<unsigned char>& row, int offset, int rowSize);

} // namespace Quillet
