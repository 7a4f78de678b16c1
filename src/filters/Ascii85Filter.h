#pragma once

#include "document/Filter.h"

#include <array>

namespace Quillet {

/// Decodes base-85 text. Takes its source byte by byte, so that the source stands right behind the end marker
/// afterwards. Raises kind 12 for every byte out of place, and goes on.
class QUILLET_API Ascii85Filter : public Filter
{
public:
    using Filter::Filter;

    int Decode(char* buf, int size) override;
    /// Whether the end marker was seen; without one in the data, a read of 0 bytes is the end.
    bool AtEnd() const override { return isFinished; }
    unsigned long long GetEstimatedLength() const override;

    std::array<char, 5> group{};
    /// Bytes of `group` not delivered yet, of `groupLength` in all.
    int count = 0;
    int groupLength = 0;
    bool isFinished = false;

private:
    int ReadBuf();
    int SetGroup(unsigned value, int length);
};

} // namespace Quillet
