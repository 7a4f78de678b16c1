#pragma once

#include "filters/FilterWithPredictor.h"

#include <vector>

namespace Quillet {

/// Decodes LZW data, all of it at the first read.
class QUILLET_API LzwFilter : public FilterWithPredictor
{
public:
    using FilterWithPredictor::FilterWithPredictor;

    void SetDecodeParams(Kernel::Counted<const DecodeParams> params) override;

    int Decode(char* buf, int size) override;
    void ReadAll(std::vector<char>& out) override;
    /// Never true for an empty source: ask for bytes to see the end.
    bool AtEnd() const override;
    unsigned long long GetEstimatedLength() const override;

    /// Decodes what is left of the source and appends it. Raises kind 12 for a code that is not in the table yet, and
    /// where the data outgrows what a stream may hold; the data ends there. Raises kind 15 if it is unbuffered, since
    /// it takes the whole source all the same.
    void DecodeAll(std::vector<char>& out);

    std::vector<char> decoded;
    unsigned long long readPos = 0;
    /// Codes widen one code before they have to.
    bool earlyChange = true;
};

} // namespace Quillet
