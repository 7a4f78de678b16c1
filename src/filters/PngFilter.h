#pragma once

#include "document/Filter.h"

#include <vector>

namespace Quillet {

/// Undoes the PNG filters (PNG, clause 9). Each row carries its own tag; which of them the stream's parameters name
/// does not matter.
class QUILLET_API PngFilter : public Filter
{
public:
    using Filter::Filter;

    /// Raises kind 12 for values out of range; the filter then delivers nothing.
    void SetDecodeParams(Kernel::Counted<const DecodeParams> params) override;

    int Decode(char* buf, int size) override;
    bool AtEnd() const override { return rowSize == 0; }
    unsigned long long GetEstimatedLength() const override;

    int bytesPerPixel = 0;
    /// Size of a row with one pixel ahead of it; 0 at the end of the data.
    int rowSize = 0;
    std::vector<unsigned char> currentRow;
    std::vector<unsigned char> previousRow;
    int readPos = 0;

private:
    bool ReadRow();
};

} // namespace Quillet
