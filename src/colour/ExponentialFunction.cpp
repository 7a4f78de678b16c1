#include "colour/ExponentialFunction.h"

#include "document/Limits.h"

#include <Quillet/Budget.h>

#include <cmath>

namespace Quillet {

ExponentialFunction::ExponentialFunction(Kernel::Counted<Dictionary> dictionary) : Function(dictionary)
{
    if (!dictionary->GetRealVec("C0", c0)) c0.push_back(0.0);
    if (!dictionary->GetRealVec("C1", c1)) c1.push_back(1.0);
    n = dictionary->GetReal("N", 1.0);
    SetRangeSize(c0.size());
    if (!IsValid()) throw InvalidFunctionException();
}

bool ExponentialFunction::IsValid() const
{
    if (!Function::IsValid() || domain.size() != 2 || c0.size() != c1.size()) return false;
    if (!range.empty() && range.size() != 2 * c0.size()) return false;
    // The standard forbids negative inputs to exponents that are not whole; files are made for this rule, which forbids
    // them to whole ones.
    constexpr double c_wholeTolerance = 1e-6;
    const bool isWhole = std::abs(n - std::round(n)) <= c_wholeTolerance;
    if (isWhole && domain[0] < 0) return false;
    return !(n < 0 && domain[0] <= 0 && domain[1] >= 0);
}

void ExponentialFunction::Call(double* out, unsigned long outCount, const double* in, unsigned long inCount) const
{
    if (inCount != 1 || outCount != rangeSize) {
        Function::Call(out, outCount, in, inCount);
        return;
    }
    Budget::Spend(Limits::c_sampleUnits * outCount);
    const double x = Clamp(in[0], domain[0], domain[1]);
    const double power = n == 1 ? x : std::pow(x, n);
    for (unsigned long i = 0; i < outCount; ++i) {
        out[i] = (c1[i] - c0[i]) * power + c0[i];
        if (!range.empty()) out[i] = Clamp(out[i], range[2 * i], range[2 * i + 1]);
    }
}

} // namespace Quillet
