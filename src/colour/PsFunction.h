#pragma once

#include "colour/Function.h"
#include "colour/PsObject.h"

namespace Quillet {

/// Type 4: a PostScript calculator program (ISO 32000-2, 7.10.5), compiled once.
class QUILLET_API PsFunction : public Function
{
public:
    /// Throws `InvalidFunctionException`.
    explicit PsFunction(Kernel::Counted<Dictionary> dictionary);

    bool IsValid() const override;
    /// A program that fails gives what a default function would.
    void Call(double* out, unsigned long outCount, const double* in, unsigned long inCount) const override;

    PsProcedureVec program;

private:
    /// False for a program that does not leave as many numbers as there are outputs.
    bool Run(double* out, unsigned long outCount, const double* in, unsigned long inCount) const;

    /// Elements of all procedures.
    unsigned long long programLength = 0;
};

} // namespace Quillet
