#include "colour/Function.h"

#include "colour/ColourSpace.h"
#include "colour/DefaultFunction.h"
#include "colour/ExponentialFunction.h"
#include "colour/PsFunction.h"
#include "colour/SampledFunction1.h"
#include "colour/SampledFunctionN.h"
#include "colour/StitchingFunction.h"
#include "document/Limits.h"
#include "document/Guard.h"

#include <Quillet/Budget.h>

#include <algorithm>
#include <cmath>

namespace Quillet {

namespace {

/// How deep the functions that this thread is making lie in each other.
thread_local int t_nesting = 0;

class Nesting
{
public:
    Nesting() { ++t_nesting; }
    ~Nesting() { --t_nesting; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

    explicit operator bool() const { return t_nesting <= Limits::c_maxFunctionNesting; }
};

Kernel::Counted<const Function> MakeByType(const Ref& ref, Kernel::Counted<Dictionary> dictionary)
{
    switch (dictionary->GetInt("FunctionType", 0)) {
    case 0: {
        // The numbers are counted and not the pairs, so a table of one input is one of N.
        const int domainSize = Function::PeekDomainSize(dictionary);
        if (domainSize == 0) return Kernel::MakeCounted<const DefaultFunction>(dictionary);
        if (domainSize == 1) return Kernel::MakeCounted<const SampledFunction1>(dictionary);
        return Kernel::MakeCounted<const SampledFunctionN>(dictionary);
    }
    case 2:
        return Kernel::MakeCounted<const ExponentialFunction>(dictionary);
    case 3:
        return Kernel::MakeCounted<const StitchingFunction>(dictionary);
    case 4:
        return Kernel::MakeCounted<const PsFunction>(dictionary);
    default:
        ref.OnError(Error::UnimplementedFill);
        return Kernel::MakeCounted<const DefaultFunction>(dictionary);
    }
}

/// Stop `middle` looks as the straight way between the stops around it does.
bool IsOnTheWay(const Renderer::ColourPosition& before, const Raster::PixelRgbF& beforePixel,
                const Renderer::ColourPosition& middle, const Raster::PixelRgbF& pixel,
                const Renderer::ColourPosition& after, const Raster::PixelRgbF& afterPixel)
{
    constexpr float c_transparent = 1e-20f;
    constexpr float c_tolerance = 0.02f;
    const auto share = static_cast<float>((middle.position - before.position) / (after.position - before.position));
    const auto mix = [share](float a, float b) { return a * (1 - share) + b * share; };
    const bool isClear = std::abs(pixel.alpha) < c_transparent;
    const bool isClearExpected = std::abs(mix(beforePixel.alpha, afterPixel.alpha)) < c_transparent;
    if (isClear || isClearExpected) return isClear && isClearExpected;
    const float red = mix(beforePixel.red, afterPixel.red) - pixel.red;
    const float green = mix(beforePixel.green, afterPixel.green) - pixel.green;
    const float blue = mix(beforePixel.blue, afterPixel.blue) - pixel.blue;
    return std::sqrt((red * red + green * green + blue * blue) / 3) < c_tolerance;
}

/// Drops the stops from `first` on that add nothing, and the last, which the next piece brings again.
void DropNeedlessStops(std::vector<Renderer::ColourPosition>& list, std::size_t first)
{
    std::vector<Raster::PixelRgbF> pixels;
    for (std::size_t i = first; i < list.size(); ++i)
        pixels.push_back(list[i].colour->GetRgbaPixel({}));
    std::size_t kept = first;
    for (std::size_t i = first + 1; i + 1 < list.size(); ++i) {
        if (IsOnTheWay(list[kept], pixels[kept - first], list[i], pixels[i - first], list[i + 1],
                       pixels[i + 1 - first])) {
            continue;
        }
        ++kept;
        list[kept] = list[i];
        pixels[kept - first] = pixels[i - first];
    }
    list.resize(kept + 1);
}

} // namespace

Kernel::Counted<const Function> Function::Make(const Ref& ref)
{
    if (auto cached = ref.isIndirect ? ref.GetCache<Function>() : nullptr) return cached;
    const Nesting nesting;
    Guard::Walk walk(Guard::Way::Functions, ref);
    if (!nesting || !walk.Enter(ref)) {
        ref.OnError(Error::General);
        return Kernel::MakeCounted<const DefaultFunction>();
    }
    auto function = Make2(ref);
    if (ref.isIndirect) ref.SetCache(function);
    return function;
}

Kernel::Counted<const Function> Function::Make2(const Ref& ref)
{
    const auto dictionary = Kernel::MakeCounted<Dictionary>(ref);
    try {
        return MakeByType(ref, dictionary);
    } catch (const InvalidFunctionException&) {
        ref.OnError(Error::General);
        return Kernel::MakeCounted<const DefaultFunction>(dictionary);
    }
}

int Function::PeekDomainSize(Kernel::Counted<Dictionary> dictionary)
{
    std::vector<double> numbers;
    dictionary->GetRealVec("Domain", numbers);
    return static_cast<int>(numbers.size());
}

Function::Function(Kernel::Counted<Dictionary> dictionary)
{
    dictionary->GetRealVec("Domain", domain);
    dictionary->GetRealVec("Range", range);
}

bool Function::IsValidRange(const std::vector<double>& ranges, bool allowEqual)
{
    if (ranges.size() % 2 != 0) return false;
    for (std::size_t i = 0; i < ranges.size(); i += 2) {
        if (!(ranges[i] < ranges[i + 1] || (allowEqual && ranges[i] == ranges[i + 1]))) return false;
    }
    return true;
}

bool Function::IsValid() const
{
    return IsValidRange(domain, false) && IsValidRange(range, false) && rangeSize != 0;
}

double Function::Clamp(double value, double low, double high)
{
    return value < low ? low : std::min(value, high);
}

void Function::Call(double* out, unsigned long outCount, const double* in, unsigned long inCount) const
{
    for (unsigned long i = 0; i < outCount; ++i) {
        const double value = inCount == 0 ? 0.0 : in[std::min(i, inCount - 1)];
        out[i] = 2 * i + 1 < range.size() ? Clamp(value, range[2 * i], range[2 * i + 1]) : 0.0;
    }
}

Kernel::Consolidated<Renderer::Colour> Function::MakeColour(Kernel::Counted<const ColourSpace> space, double t) const
{
    Colour colour(space->GetComponentCount());
    Call(colour.components.data(), colour.components.size(), &t, 1);
    return space->MakeColour(colour);
}

void Function::AddToColourList(std::vector<Renderer::ColourPosition>& list, Kernel::Counted<const ColourSpace> space,
                               double pos0, double pos1, double t0, double t1) const
{
    constexpr int c_stepCount = 32;
    if (list.size() >= Limits::c_maxGradientStops || !Budget::Spend(c_stepCount * Limits::c_entryUnits)) return;
    if (IsLinear()) {
        list.push_back({MakeColour(space, t0), pos0});
        return;
    }
    const std::size_t first = list.size();
    for (int i = 0; i <= c_stepCount; ++i) {
        const double share = i * (1.0 / c_stepCount);
        list.push_back({MakeColour(space, t0 + (t1 - t0) * share), pos0 + (pos1 - pos0) * share});
    }
    DropNeedlessStops(list, first);
}

Kernel::Consolidated<Renderer::Gradient> Function::AsGradient(Kernel::Counted<const ColourSpace> space, double t0,
                                                              double t1) const
{
    std::vector<Renderer::ColourPosition> list;
    AddToColourList(list, space, 0.0, 1.0, t0, t1);
    list.push_back({MakeColour(space, t1), 1.0});
    return Kernel::ConsolidateObjectPostAlloc(Renderer::Gradient(std::move(list)));
}

} // namespace Quillet
