#include "colour/SampledFunction.h"

#include "filters/Stream.h"

#include <algorithm>

namespace Quillet {

SampledFunction::SampledFunction(Kernel::Counted<Dictionary> dictionary) : Function(dictionary)
{
    bitsPerSample = dictionary->GetInt("BitsPerSample", 1);
    maxSample = (1u << (static_cast<unsigned>(bitsPerSample) & 31)) - 1;
    SetRangeSize(range.size() / 2);
    dictionary->GetIntVec("Size", sizes);
    if (!dictionary->GetRealVec("Encode", encode)) {
        for (const int size : sizes)
            encode.insert(encode.end(), {0.0, static_cast<double>(size) - 1});
    }
    if (!dictionary->GetRealVec("Decode", decode)) decode = range;
    std::vector<char> bytes;
    Stream(dictionary).ReadBlock(bytes);
    SetSamples(std::move(bytes));
}

void SampledFunction::SetSamples(std::vector<char> bytes)
{
    samples = std::move(bytes);
    if (bitsPerSample > 0) sampleCount = samples.size() * 8ull / static_cast<unsigned>(bitsPerSample);
}

bool SampledFunction::IsValid() const
{
    if (!Function::IsValid() || !IsValidRange(domain, true)) return false;
    if (maxSample == 0 || bitsPerSample < 1 || bitsPerSample > 32 || sampleCount == 0) return false;
    if (domain.size() < 2 || sizes.size() != domain.size() / 2) return false;
    if (encode.size() != domain.size() / 2 * 2 || decode.size() != 2 * rangeSize) return false;
    // A table that is too short for its outputs passes; what it lacks is 0.
    const auto bitCount = static_cast<long long>(samples.size()) * 8;
    long long product = bitsPerSample;
    for (const int size : sizes) {
        if (size <= 0 || product > bitCount / size) return false;
        product *= size;
    }
    return true;
}

double SampledFunction::GetIn(const double* in, unsigned long count, unsigned long index) const
{
    const double low = domain[2 * index];
    const double high = domain[2 * index + 1];
    const double x = Clamp(index < count ? in[index] : 0.0, low, high);
    const double encodeLow = encode[2 * index];
    const double place = (x - low) * (encode[2 * index + 1] - encodeLow) / (high - low) + encodeLow;
    // Written so that what is no number becomes 0.
    return place > 0 ? std::min(place, sizes[index] - 1.0) : 0.0;
}

void SampledFunction::SetOut(double* out, unsigned long index, double value) const
{
    const double low = decode[2 * index];
    const double decoded = value * (decode[2 * index + 1] - low) / maxSample + low;
    out[index] = Clamp(decoded, range[2 * index], range[2 * index + 1]);
}

std::uint32_t SampledFunction::GetSampleValue(unsigned long long sample) const
{
    const auto width = static_cast<unsigned>(bitsPerSample);
    const unsigned long long position = sample * width;
    const std::size_t first = position / 8;
    const std::size_t byteCount = (width + 7) / 8;
    if (first + byteCount > samples.size()) return 0;
    std::uint32_t value = 0;
    for (std::size_t i = first; i < first + byteCount; ++i)
        value = value << 8 | static_cast<unsigned char>(samples[i]);
    return value >> (position % 8) & maxSample;
}

} // namespace Quillet
