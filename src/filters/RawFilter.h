#pragma once

#include "document/Filter.h"

namespace Quillet {

/// The bytes of a stream as they stand in the file; the first filter of every stream.
class QUILLET_API RawFilter : public Filter
{
public:
    /// `file` may be null: then there are no bytes. `place` is told with faults.
    RawFilter(Kernel::Counted<PdfSource> file, unsigned long long start, unsigned long long length,
              const ErrorPlace& place);

    ErrorPlace GetErrorPlace() const override { return errorPlace; }

    int Decode(char* buf, int size) override;
    void ReadAll(std::vector<char>& out) override;
    bool AtEnd() const override { return remaining == 0; }
    /// What is declared, but no more than the source holds.
    unsigned long long GetEstimatedLength() const override;
    int IncreaseLength(int more) override;

    Kernel::Counted<PdfSource> rawSource;
    unsigned long long pos;
    unsigned long long remaining;

private:
    ErrorPlace errorPlace;
};

} // namespace Quillet
