#pragma once

#include "document/Filter.h"

namespace Quillet {

/// Decodes hexadecimal text. Takes its source byte by byte, so that the source stands right behind the end marker
/// afterwards. Raises kind 12 for every byte that is no digit, and counts it as 0.
class QUILLET_API AsciiHexFilter : public Filter
{
public:
    using Filter::Filter;

    int Decode(char* buf, int size) override;
    bool AtEnd() const override { return isFinished; }
    unsigned long long GetEstimatedLength() const override;

    bool isFinished = false;

private:
    int GetHexDigit();
};

} // namespace Quillet
