#pragma once

#include "colour/SampledFunction.h"

namespace Quillet {

/// A table of one input. What the factory takes for one has an odd "Domain", and so is none.
class QUILLET_API SampledFunction1 : public SampledFunction
{
public:
    /// Throws `InvalidFunctionException`.
    explicit SampledFunction1(Kernel::Counted<Dictionary> dictionary);

    void Call(double* out, unsigned long outCount, const double* in, unsigned long inCount) const override;
};

} // namespace Quillet
