#pragma once

#include "document/PdfSource.h"

#include <Kernel/InStream.h>

#include <vector>

namespace Quillet {

/// A document in a forward-only stream of the host: read bytes are kept, so each is fetched once, at any position.
class QUILLET_API InStreamSource : public PdfSource
{
public:
    /// Borrows `hostStream`. Without a handler of its own, a read beyond the end is thrown and never recorded.
    explicit InStreamSource(Kernel::InStream& hostStream);

    const std::string& GetDocName() const override { return name; }
    void Open(const std::string& newName) override { name = newName; }
    unsigned long long GetBaseOffset() const override { return baseOffset; }
    void SetBaseOffset(unsigned long long offset) override { baseOffset = offset; }
    unsigned long long GetLength() const override;
    unsigned long long GetEstimatedLength() const override { return GetLength(); }
    bool AtEnd() const override;
    bool IsRandomAccess() const override { return true; }
    /// Raises FileOp beyond the end, or if the stream gives less than it said.
    int Read(unsigned long long pos, char* buf, int count) override;

    Kernel::InStream& stream;
    std::vector<char> bytes;
    std::string name;
    unsigned long long baseOffset = 0;
    unsigned long long filled = 0;
};

} // namespace Quillet
