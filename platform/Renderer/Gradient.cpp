#include <Renderer/Gradient.h>
#include <Renderer/ValueKey.h>

#include <algorithm>

namespace Renderer {

namespace {

auto GetKey(const ColourPosition& stop)
{
    return std::tuple(stop.colour.Get(), KeyOf(stop.position), KeyOf(stop.midpoint), stop.hostData);
}

} // namespace

Gradient::Gradient(std::vector<ColourPosition> colourStops) : stops(std::move(colourStops)) {}

Kernel::Consolidated<Gradient> Gradient::Create(const std::vector<ColourPosition>& stops)
{
    return Kernel::ConsolidateObjectPostAlloc(Gradient(stops));
}

bool Gradient::IsOpaque() const
{
    return std::ranges::all_of(stops, [](const ColourPosition& stop) { return stop.colour->GetAlpha() >= 1; });
}

Kernel::Consolidated<Gradient> Gradient::MakeWithAlpha(double alpha) const
{
    std::vector<ColourPosition> weaker = stops;
    for (ColourPosition& stop : weaker) {
        const double product = static_cast<double>(stop.colour->GetAlpha()) * alpha;
        stop.colour = stop.colour->MakeWithAlpha(static_cast<float>(product));
    }
    return Create(weaker);
}

std::size_t Gradient::GetHash() const
{
    std::size_t hash = stops.size();
    for (const ColourPosition& stop : stops)
        hash = HashOf(std::tuple_cat(std::tuple(hash), GetKey(stop)));
    return hash;
}

bool Gradient::IsEqual(const Kernel::Consolidatable& other) const
{
    return std::ranges::equal(stops, static_cast<const Gradient&>(other).stops, {}, GetKey, GetKey);
}

} // namespace Renderer
