#pragma once

#include "document/PdfSource.h"

namespace Quillet {

/// A document in the caller's memory.
///
/// The base offset is kept but not added to positions: with rubbish ahead of the header, positions in the file count
/// from the start of the memory. Hosts rely on it.
class QUILLET_API MemorySource : public PdfSource
{
public:
    /// Borrows `bytes`. Without a handler of its own, a read beyond the end is thrown and never recorded.
    MemorySource(const char* bytes, unsigned long long byteCount) : data(bytes), size(byteCount) {}

    const std::string& GetDocName() const override { return name; }
    void Open(const std::string& newName) override { name = newName; }
    unsigned long long GetBaseOffset() const override { return baseOffset; }
    void SetBaseOffset(unsigned long long offset) override { baseOffset = offset; }
    unsigned long long GetPosInSource(unsigned long long pos) const override { return pos; }
    unsigned long long GetLength() const override { return size; }
    unsigned long long GetEstimatedLength() const override { return size; }
    bool AtEnd() const override { return false; }
    bool IsRandomAccess() const override { return true; }
    /// Raises FileOp beyond the end.
    int Read(unsigned long long pos, char* buf, int count) override;

    const char* data;
    unsigned long long size;
    std::string name;
    unsigned long long baseOffset = 0;
};

} // namespace Quillet
