#include "colour/StitchingFunction.h"

#include "colour/ColourSpace.h"
#include "document/Limits.h"

#include <Quillet/Budget.h>

#include <algorithm>

namespace Quillet {

StitchingFunction::StitchingFunction(Kernel::Counted<Dictionary> dictionary) : Function(dictionary)
{
    std::vector<Ref> refs;
    dictionary->GetRefVec("Functions", refs);
    for (const Ref& ref : refs) {
        functions.push_back(Make(ref));
        nesting = std::max(nesting, functions.back()->nesting + 1);
    }
    dictionary->GetRealVec("Bounds", bounds);
    if (domain.size() == 2) {
        bounds.insert(bounds.begin(), domain[0]);
        bounds.push_back(domain[1]);
    }
    dictionary->GetRealVec("Encode", encode);
    if (!functions.empty()) SetRangeSize(functions[0]->rangeSize);
    if (!IsValid()) throw InvalidFunctionException();
    RemoveEmptyParts();
    if (functions.empty()) throw InvalidFunctionException();
}

bool StitchingFunction::IsValid() const
{
    if (!Function::IsValid() || domain.size() != 2 || nesting > Limits::c_maxFunctionNesting) return false;
    if (functions.empty() || bounds.size() != functions.size() + 1 || encode.size() != 2 * functions.size()) {
        return false;
    }
    if (!std::ranges::is_sorted(bounds)) return false;
    // Only valid functions are ever made, and default ones in place of others; to ask each whether it is valid would
    // ask those below it again and again where functions share their parts.
    return std::ranges::all_of(functions, [this](const Kernel::Counted<const Function>& function) {
        return !function->IsDefault() && function->domain.size() == 2 && function->rangeSize == rangeSize;
    });
}

void StitchingFunction::RemoveEmptyParts()
{
    // The entries that stay move down once, so that many empty parts do not cost their square.
    std::size_t kept = 0;
    std::size_t next = 0;
    const std::size_t count = functions.size();
    const auto keep = [&] {
        functions[kept] = functions[next];
        bounds[kept] = bounds[next];
        encode[2 * kept] = encode[2 * next];
        encode[2 * kept + 1] = encode[2 * next + 1];
        ++kept;
        ++next;
    };
    while (next < count) {
        const bool isEmpty = bounds[next] == bounds[next + 1];
        if (isEmpty) ++next;
        if (next < count) keep();
    }
    bounds[kept] = bounds[count];
    functions.resize(kept);
    bounds.resize(kept + 1);
    encode.resize(2 * kept);
}

double StitchingFunction::Encode(std::size_t part, double x) const
{
    const double width = bounds[part + 1] - bounds[part];
    const double start = encode[2 * part];
    if (width == 0) return start;
    return (encode[2 * part + 1] - start) * (x - bounds[part]) / width + start;
}

void StitchingFunction::Call(double* out, unsigned long outCount, const double* in, unsigned long inCount) const
{
    if (inCount != 1 || outCount != rangeSize) {
        Function::Call(out, outCount, in, inCount);
        return;
    }
    Budget::Spend(Limits::c_operatorUnits);
    const double x = Clamp(in[0], domain[0], domain[1]);
    const auto end = std::upper_bound(bounds.begin() + 1, bounds.end() - 1, x);
    const auto part = static_cast<std::size_t>(end - bounds.begin() - 1);
    const double encoded = Encode(part, x);
    functions[part]->Call(out, outCount, &encoded, 1);
    for (unsigned long i = 0; i < outCount && 2 * i + 1 < range.size(); ++i)
        out[i] = Clamp(out[i], range[2 * i], range[2 * i + 1]);
}

void StitchingFunction::AddToColourList(std::vector<Renderer::ColourPosition>& list,
                                        Kernel::Counted<const ColourSpace> space, double pos0, double pos1, double t0,
                                        double t1) const
{
    const double start = bounds.front();
    const double width = bounds.back() - start;
    for (std::size_t part = 0; part < functions.size(); ++part) {
        const double low = bounds[part];
        const double high = bounds[part + 1];
        if (low == high) continue;
        if (list.size() >= Limits::c_maxGradientStops || !Budget::Spend(Limits::c_entryUnits)) return;
        const auto place = [&](double at, double from, double to) { return from + (at - start) * (to - from) / width; };
        functions[part]->AddToColourList(list, space, place(low, pos0, pos1), place(high, pos0, pos1),
                                         Encode(part, place(low, t0, t1)), Encode(part, place(high, t0, t1)));
    }
}

} // namespace Quillet
