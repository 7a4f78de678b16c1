#pragma once

#include "content/ContentContext.h"
#include "content/Operator.h"

namespace Quillet {

/// "g", "rg", "k", "sc", "scn" and their stroke forms: sets the colour.
class OpSetColour : public Operator
{
public:
    using FixedSpace = Kernel::Counted<const ColourSpace> ContentContext::*;

    /// `fixedSpace` is what the operator sets along with the colour; null for those that use the current space.
    explicit OpSetColour(bool isForStroke, FixedSpace fixedSpace = nullptr) : isStroke(isForStroke), space(fixedSpace)
    {}

    void Execute(const ArgVec& args) const override;
    void AddRasterFormats(RasterFormatPicker& picker, const ArgVec& args) const override;

    bool isStroke;
    FixedSpace space;
};

/// "cs", "CS": sets the colour space, and its default colour.
class OpSetColourSpace : public Operator
{
public:
    explicit OpSetColourSpace(bool isForStroke) : isStroke(isForStroke) {}

    void Execute(const ArgVec& args) const override;
    void AddRasterFormats(RasterFormatPicker& picker, const ArgVec& args) const override;

    bool isStroke;

private:
    Kernel::Counted<const ColourSpace> MakeSpace(const ArgVec& args) const;
};

} // namespace Quillet
