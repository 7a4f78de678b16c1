#pragma once

#include "document/Filter.h"

#include <vector>

namespace Quillet {

/// Undoes the TIFF predictor 2: each component is stored as its difference from the pixel to the left.
class QUILLET_API Tiff2Filter : public Filter
{
public:
    using Filter::Filter;

    /// Raises kind 12 for values out of range; the filter then delivers nothing.
    void SetDecodeParams(Kernel::Counted<const DecodeParams> params) override;

    int Decode(char* buf, int size) override;
    bool AtEnd() const override { return rowSize == 0; }
    unsigned long long GetEstimatedLength() const override;

    int bytesPerPixel = 0;
    int colors = 1;
    int bitsPerComponent = 8;
    int columns = 1;
    /// Size of a row with one pixel ahead of it; 0 at the end of the data.
    int rowSize = 0;
    std::vector<unsigned char> row;
    int readPos = 0;

private:
    bool ReadRow();
    void UndoBytes();
    void UndoBits();
};

} // namespace Quillet
