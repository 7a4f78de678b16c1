#pragma once

#include "colour/SampledFunction.h"

namespace Quillet {

/// A table of one to eight inputs.
class QUILLET_API SampledFunctionN : public SampledFunction
{
public:
    /// Throws `InvalidFunctionException`.
    explicit SampledFunctionN(Kernel::Counted<Dictionary> dictionary);

    void Call(double* out, unsigned long outCount, const double* in, unsigned long inCount) const override;

    static constexpr unsigned long c_maxInputs = 8;

private:
    /// The value of an output between the corners around `places` in the first `inputCount` inputs; `entry` is the
    /// place in the table that the later inputs have chosen. Visits two to the power `inputCount` samples.
    double GetInterpolated(const double* places, unsigned long inputCount, unsigned long long entry,
                           unsigned long output) const;
};

} // namespace Quillet
