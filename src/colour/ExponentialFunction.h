#pragma once

#include "colour/Function.h"

namespace Quillet {

/// Type 2: from "C0" to "C1" along a power of the one input (ISO 32000-2, 7.10.3).
class QUILLET_API ExponentialFunction : public Function
{
public:
    /// Throws `InvalidFunctionException`.
    explicit ExponentialFunction(Kernel::Counted<Dictionary> dictionary);

    bool IsValid() const override;
    bool IsLinear() const override { return n == 0 || n == 1; }
    void Call(double* out, unsigned long outCount, const double* in, unsigned long inCount) const override;

    std::vector<double> c0;
    std::vector<double> c1;
    double n;
};

} // namespace Quillet
