#pragma once

#include "document/Dictionary.h"

#include <Quillet/RefCacheable.h>

#include <Kernel/Consolidated.h>
#include <Kernel/Counted.h>
#include <Kernel/Export.h>
#include <Renderer/Gradient.h>

#include <vector>

namespace Quillet {

class ColourSpace;

/// A function of numbers (ISO 32000-2, 7.10). Immutable after construction, and shared.
class QUILLET_API Function : public RefCacheable
{
public:
    /// Thrown by constructors; `Make` answers it with a `DefaultFunction`.
    class InvalidFunctionException
    {};

    /// Never null: what is no function, or a damaged one, gives a `DefaultFunction`. One object an indirect reference.
    static Kernel::Counted<const Function> Make(const Ref& ref);
    /// The same without the cache.
    static Kernel::Counted<const Function> Make2(const Ref& ref);
    /// How many numbers "Domain" has.
    static int PeekDomainSize(Kernel::Counted<Dictionary> dictionary);

    virtual bool IsValid() const;
    /// Its colour ramps are straight from one end to the other.
    virtual bool IsLinear() const { return false; }
    /// Stands for a function that is missing or damaged.
    virtual bool IsDefault() const { return false; }
    /// Fills `out`. Counts that do not fit the function give the inputs, held to "Range"; zeros without one.
    virtual void Call(double* out, unsigned long outCount, const double* in, unsigned long inCount) const = 0;
    /// Appends the stops of a ramp from `t0` to `t1`, placed from `pos0` to `pos1`. The end stays open: the next
    /// piece's first stop, or the caller's last one, closes it.
    virtual void AddToColourList(std::vector<Renderer::ColourPosition>& list, Kernel::Counted<const ColourSpace> space,
                                 double pos0, double pos1, double t0, double t1) const;

    /// The colour at `t` of a function of one input.
    Kernel::Consolidated<Renderer::Colour> MakeColour(Kernel::Counted<const ColourSpace> space, double t) const;
    /// The ramp from `t0` to `t1`, with as few stops as show it.
    Kernel::Consolidated<Renderer::Gradient> AsGradient(Kernel::Counted<const ColourSpace> space, double t0,
                                                        double t1) const;

    /// Pairs, a lower and an upper end for each input and output; "Range" may be absent.
    std::vector<double> domain;
    std::vector<double> range;
    /// How many outputs it has.
    unsigned long rangeSize = 0;
    /// Functions that call others are one deeper than these: a call goes that far down the stack.
    int nesting = 0;

protected:
    Function() = default;
    /// Reads "Domain" and "Range".
    explicit Function(Kernel::Counted<Dictionary> dictionary);

    /// Pairs in ascending order; equal ends pass only if allowed.
    static bool IsValidRange(const std::vector<double>& ranges, bool allowEqual);
    /// The lower end for a value below it, else the smaller of value and upper end.
    static double Clamp(double value, double low, double high);
    void SetRangeSize(unsigned long size) { rangeSize = size; }
};

} // namespace Quillet
