#pragma once

#include "filters/RowPredictor.h"

#include <vector>

namespace Quillet {

/// Undoes the PNG filters (PNG, clause 9). Each row carries its own tag; which of them the stream's parameters name
/// does not matter.
class QUILLET_API PngFilter : public RowPredictor
{
public:
    using RowPredictor::RowPredictor;

    /// Raises kind 12 for values out of range; the filter then delivers nothing.
    void SetDecodeParams(Kernel::Counted<const DecodeParams> params) override;

    unsigned long long GetEstimatedLength() const override;

    std::vector<unsigned char> previousRow;

private:
    bool ReadRow() override;
};

} // namespace Quillet
