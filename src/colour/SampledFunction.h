#pragma once

#include "colour/Function.h"

#include <cstdint>

namespace Quillet {

/// Type 0: a table of samples, with values between them in proportion (ISO 32000-2, 7.10.2).
class QUILLET_API SampledFunction : public Function
{
public:
    bool IsValid() const override;
    bool IsLinear() const override { return sampleCount == 2; }

    /// One number for each input.
    std::vector<int> sizes;
    std::vector<double> encode;
    std::vector<double> decode;
    int bitsPerSample;
    /// The largest sample; 0 for a width of 32 bits, which is not read.
    std::uint32_t maxSample;
    std::vector<char> samples;
    unsigned long long sampleCount = 0;

protected:
    explicit SampledFunction(Kernel::Counted<Dictionary> dictionary);

    void SetSamples(std::vector<char> bytes);
    /// Input `index` as a place in the table, from 0 to its size less 1.
    double GetIn(const double* in, unsigned long count, unsigned long index) const;
    /// Writes a value in units of samples as output `index`.
    void SetOut(double* out, unsigned long index, double value) const;
    /// Samples narrower than a byte fill it from its low bits on; a sample that is not there is 0.
    std::uint32_t GetSampleValue(unsigned long long sample) const;
    /// Output `output` of an entry of the table.
    double GetSampleValue(unsigned long long entry, unsigned long output) const
    {
        return GetSampleValue(entry * rangeSize + output);
    }
};

} // namespace Quillet
