#pragma once

#include "fonts/SimpleFont.h"

namespace Quillet {

/// A font whose glyphs are content streams (ISO 32000-2, 9.6.4). Those are not run: its text comes in a font of the
/// machine.
class QUILLET_API Type3Font : public SimpleFont
{
public:
    explicit Type3Font(const Kernel::Counted<Dictionary>& dictionary);

    bool IsSupported() const override { return false; }
    double GetSizeScale() const override { return sizeScale; }
    bool IsMirrored() const override { return isMirrored; }
    void ReadMetricsFromStandard() override {}
    void ReadDescriptor(Dictionary&) override {}

    double sizeScale = 1;
    bool isMirrored = false;

private:
    void ReadSizeScale(Dictionary& dictionary, double unitsToText);
};

} // namespace Quillet
