#pragma once

#include "colour/Function.h"

namespace Quillet {

/// Takes the place of a function that is damaged or of an unknown type: gives its inputs, held to "Range".
class QUILLET_API DefaultFunction : public Function
{
public:
    DefaultFunction() = default;
    explicit DefaultFunction(Kernel::Counted<Dictionary> dictionary) : Function(std::move(dictionary)) {}

    bool IsDefault() const override { return true; }
    void Call(double* out, unsigned long outCount, const double* in, unsigned long inCount) const override
    {
        Function::Call(out, outCount, in, inCount);
    }
};

} // namespace Quillet
