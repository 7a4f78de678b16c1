#pragma once

#include "document/Filter.h"

namespace Quillet {

/// Base of the compressors whose data may have been predicted before it was packed.
class QUILLET_API FilterWithPredictor : public Filter
{
public:
    using Filter::Filter;

    void SetDecodeParams(Kernel::Counted<const DecodeParams> params) override;
    /// The filter that undoes the prediction. Raises kind 15 for a predictor that nobody defined.
    Kernel::Counted<Filter> MakePredictor() override;

    int predictor = 0;
};

} // namespace Quillet
