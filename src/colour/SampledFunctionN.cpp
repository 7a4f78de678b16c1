#include "colour/SampledFunctionN.h"

#include "document/Limits.h"

#include <Quillet/Budget.h>

#include <algorithm>
#include <cmath>

namespace Quillet {

SampledFunctionN::SampledFunctionN(Kernel::Counted<Dictionary> dictionary) : SampledFunction(std::move(dictionary))
{
    if (!IsValid() || domain.size() > 2 * c_maxInputs + 1) throw InvalidFunctionException();
}

void SampledFunctionN::Call(double* out, unsigned long outCount, const double* in, unsigned long inCount) const
{
    const unsigned long inputCount = domain.size() / 2;
    if (inCount != inputCount || outCount != rangeSize ||
        !Budget::Spend(Limits::c_sampleUnits * (outCount << inputCount))) {
        Function::Call(out, outCount, in, inCount);
        return;
    }
    double places[c_maxInputs];
    for (unsigned long i = 0; i < inputCount; ++i)
        places[i] = GetIn(in, inCount, i);
    for (unsigned long i = 0; i < outCount; ++i)
        SetOut(out, i, GetInterpolated(places, inputCount, 0, i));
}

double SampledFunctionN::GetInterpolated(const double* places, unsigned long inputCount, unsigned long long entry,
                                         unsigned long output) const
{
    if (inputCount == 0) return GetSampleValue(entry, output);
    const unsigned long input = inputCount - 1;
    const auto size = static_cast<unsigned long long>(sizes[input]);
    const double below = std::floor(places[input]);
    const double share = places[input] - below;
    const auto index = std::min(static_cast<unsigned long long>(below), size - 1);
    const double a = GetInterpolated(places, input, entry * size + index, output);
    if (share == 0) return a;
    const double b = GetInterpolated(places, input, entry * size + std::min(index + 1, size - 1), output);
    return (b - a) * share + a;
}

} // namespace Quillet
