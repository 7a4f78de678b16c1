#pragma once

#include "document/Filter.h"

#include <vector>

namespace Quillet {

/// Base of the filters that undo a prediction, a row at a time. Each keeps its row behind the bytes of one pixel, which
/// stay 0 and stand for the pixel left of the first.
class QUILLET_API RowPredictor : public Filter
{
public:
    using Filter::Filter;

    int Decode(char* buf, int size) override;
    bool AtEnd() const override { return rowSize == 0; }

    int colors = 1;
    int bitsPerComponent = 8;
    int columns = 1;
    int bytesPerPixel = 0;
    /// Size of a row with one pixel ahead of it; 0 at the end of the data.
    int rowSize = 0;
    std::vector<unsigned char> currentRow;
    int readPos = 0;

protected:
    /// Reads what the rows are made of. Raises kind 12 for values out of range, and for rows beyond what a stream may
    /// hold; the filter then delivers nothing.
    void ReadLayout(const DecodeParams& params, int maxColors, int maxBitsPerComponent);

    /// Makes `currentRow` the next row, undone; false if there is none.
    virtual bool ReadRow() = 0;

    /// Fills the current row from `offset` on; false if the source gives less. The row grows only as data comes, so
    /// that a small file which speaks of wide rows stays small.
    bool FillRow(int offset);
};

} // namespace Quillet
