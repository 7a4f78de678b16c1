#pragma once

#include "filters/RowPredictor.h"

namespace Quillet {

/// Undoes the TIFF predictor 2: each component is stored as its difference from the pixel to the left.
class QUILLET_API Tiff2Filter : public RowPredictor
{
public:
    using RowPredictor::RowPredictor;

    /// Raises kind 12 for values out of range; the filter then delivers nothing.
    void SetDecodeParams(Kernel::Counted<const DecodeParams> params) override;

    unsigned long long GetEstimatedLength() const override;

private:
    bool ReadRow() override;
    void UndoBytes();
    void UndoBits();
};

} // namespace Quillet
