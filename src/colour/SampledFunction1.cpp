#include "colour/SampledFunction1.h"

#include <algorithm>

namespace Quillet {

SampledFunction1::SampledFunction1(Kernel::Counted<Dictionary> dictionary) : SampledFunction(std::move(dictionary))
{
    if (!IsValid()) throw InvalidFunctionException();
}

void SampledFunction1::Call(double* out, unsigned long outCount, const double* in, unsigned long inCount) const
{
    if (inCount != 1 || outCount != rangeSize) {
        Function::Call(out, outCount, in, inCount);
        return;
    }
    const double place = GetIn(in, inCount, 0);
    const auto entry = static_cast<unsigned long long>(place);
    const auto next = std::min(entry + 1, static_cast<unsigned long long>(sizes[0]) - 1);
    for (unsigned long i = 0; i < outCount; ++i) {
        const double a = GetSampleValue(entry, i);
        const double b = GetSampleValue(next, i);
        SetOut(out, i, (b - a) * (place - static_cast<double>(entry)) + a);
    }
}

} // namespace Quillet
