#pragma once

#include <Kernel/Export.h>

#include <vector>

namespace Quillet {

/// A histogram of numbers, rounded to multiples of a step.
class QUILLET_API FrequencyMap
{
public:
    struct Bucket
    {
        double rounded;
        /// Of the numbers as they came.
        double sum;
        int count;
    };
    using Buckets = std::vector<Bucket>;

    explicit FrequencyMap(double bucketStep) : step(bucketStep) {}

    /// Without effect for what is no number.
    void Add(double value);
    /// The bucket with the most numbers; of several, the one nearest to 0. The first position of a map with none.
    Buckets::const_iterator GetBest() const;
    double GetBestRounded() const;
    double GetBestAverage() const;
    double GetMinValue() const { return buckets.empty() ? 0 : buckets.front().rounded; }
    double GetMaxValue() const { return buckets.empty() ? 0 : buckets.back().rounded; }
    /// The count of the first bucket at or above the value, which need not be the value's own.
    int GetFrequency(double value) const;
    /// The count of all buckets from `value - tolerance` to `value + tolerance`, both rounded.
    int GetFrequency(double value, double tolerance) const;
    void erase(Buckets::const_iterator bucket);

    double step;
    /// By value.
    Buckets buckets;
    int total = 0;

private:
    double Round(double value) const;
    Buckets::const_iterator Find(double rounded) const;
};

} // namespace Quillet
