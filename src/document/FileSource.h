#pragma once

#include "document/PdfSource.h"

#include <Kernel/File.h>

namespace Quillet {

/// A document in a file of the machine.
class QUILLET_API FileSource : public PdfSource
{
public:
    using PdfSource::PdfSource;

    const std::string& GetDocName() const override { return name; }
    /// Raises Fopen if there is no such file.
    void Open(const std::string& path) override;
    unsigned long long GetBaseOffset() const override { return baseOffset; }
    void SetBaseOffset(unsigned long long offset) override { baseOffset = offset; }
    unsigned long long GetLength() const override { return size - baseOffset; }
    unsigned long long GetEstimatedLength() const override { return GetLength(); }
    bool AtEnd() const override { return false; }
    bool IsRandomAccess() const override { return true; }
    /// Raises FileOp beyond the end.
    int Read(unsigned long long pos, char* buf, int count) override;

    std::string name;
    Kernel::File file;
    unsigned long long size = 0;
    unsigned long long baseOffset = 0;
};

} // namespace Quillet
