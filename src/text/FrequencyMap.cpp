#include "text/FrequencyMap.h"

#include "document/Limits.h"

#include <Quillet/Budget.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace Quillet {

double FrequencyMap::Round(double value) const
{
    return std::round(value / step) * step;
}

FrequencyMap::Buckets::const_iterator FrequencyMap::Find(double rounded) const
{
    return std::lower_bound(buckets.begin(), buckets.end(), rounded,
                            [](const Bucket& bucket, double value) { return bucket.rounded < value; });
}

void FrequencyMap::Add(double value)
{
    const double rounded = Round(value);
    // What is no number is in no order.
    if (std::isnan(rounded)) return;
    const auto place = buckets.begin() + (Find(rounded) - buckets.cbegin());
    if (place != buckets.end() && place->rounded == rounded) {
        place->sum += value;
        ++place->count;
    } else {
        // A new bucket moves those above it.
        if (!Budget::Spend(static_cast<unsigned long long>(buckets.end() - place) / Limits::c_movedBucketsPerUnit +
                           sizeof(Bucket)))
            return;
        buckets.insert(place, {rounded, value, 1});
    }
    ++total;
}

FrequencyMap::Buckets::const_iterator FrequencyMap::GetBest() const
{
    auto best = buckets.begin();
    for (auto bucket = buckets.begin(); bucket != buckets.end(); ++bucket) {
        const bool isNearer = std::abs(bucket->rounded) < std::abs(best->rounded);
        if (bucket->count > best->count || (bucket->count == best->count && isNearer)) best = bucket;
    }
    return best;
}

double FrequencyMap::GetBestRounded() const
{
    return buckets.empty() ? 0 : GetBest()->rounded;
}

double FrequencyMap::GetBestAverage() const
{
    return buckets.empty() ? 0 : GetBest()->sum / GetBest()->count;
}

int FrequencyMap::GetFrequency(double value) const
{
    const auto bucket = Find(Round(value));
    return bucket == buckets.end() ? 0 : bucket->count;
}

int FrequencyMap::GetFrequency(double value, double tolerance) const
{
    const auto first = Find(Round(value - tolerance));
    const auto last =
        std::upper_bound(first, buckets.end(), Round(value + tolerance),
                         [](double rounded, const Bucket& bucket) { return !(bucket.rounded <= rounded); });
    // A tolerance may take in the whole map, at every place that is asked for.
    if (!Budget::Spend(static_cast<unsigned long long>(last - first) / Limits::c_movedBucketsPerUnit)) return 0;
    return std::accumulate(first, last, 0, [](int count, const Bucket& bucket) { return count + bucket.count; });
}

void FrequencyMap::erase(Buckets::const_iterator bucket)
{
    total -= bucket->count;
    buckets.erase(bucket);
}

} // namespace Quillet
