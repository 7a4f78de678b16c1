#pragma once

#include "document/PdfSource.h"

#include <Quillet/Ref.h>

#include <vector>

namespace Quillet {

class ObjectSubSource;

/// A decoded object stream, from which its objects are read.
class QUILLET_API ObjectSource : public PdfSource
{
public:
    using PdfSource::Open;
    using PdfSource::PdfSource;

    /// Decodes the stream, as long as it decodes to no more than `maxLength` bytes; else it stays empty.
    void Open(const Ref& ref, unsigned long long maxLength);
    /// One object as a source of its own; an empty one for an index that is not there.
    Kernel::Counted<ObjectSubSource> MakeSubSource(int index);
    void UncheckedRead(unsigned long long pos, char* buf, int size) const;

    bool IsRandomAccess() const override { return true; }
    bool AtEnd() const override { return false; }
    unsigned long long GetLength() const override { return data.size(); }
    unsigned long long GetEstimatedLength() const override { return data.size(); }
    int Read(unsigned long long pos, char* buf, int size) override;

    std::vector<char> data;
    std::vector<unsigned long long> offsets;
    /// What decoding has cost, though it may have been too long to stay.
    unsigned long long decodedLength = 0;
};

} // namespace Quillet
