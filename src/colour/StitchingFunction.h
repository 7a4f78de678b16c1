#pragma once

#include "colour/Function.h"

namespace Quillet {

/// Type 3: one function for each part of the domain (ISO 32000-2, 7.10.4).
class QUILLET_API StitchingFunction : public Function
{
public:
    /// Throws `InvalidFunctionException`.
    explicit StitchingFunction(Kernel::Counted<Dictionary> dictionary);

    bool IsValid() const override;
    bool IsLinear() const override { return functions.size() == 1 && functions[0]->IsLinear(); }
    void Call(double* out, unsigned long outCount, const double* in, unsigned long inCount) const override;
    void AddToColourList(std::vector<Renderer::ColourPosition>& list, Kernel::Counted<const ColourSpace> space,
                         double pos0, double pos1, double t0, double t1) const override;

    std::vector<Kernel::Counted<const Function>> functions;
    /// The ends of the parts, those of the domain included.
    std::vector<double> bounds;
    /// A pair for each function: what the ends of its part become.
    std::vector<double> encode;

private:
    /// A walk that goes on behind each part that it removes, so that of two empty ones in a row the second stays.
    void RemoveEmptyParts();
    double Encode(std::size_t part, double x) const;
};

} // namespace Quillet
