#pragma once

#include <Quillet/ErrorForwarder.h>
#include <Quillet/ErrorPlace.h>

#include <Kernel/Countable.h>

#include <string>

namespace Quillet {

/// Where bytes come from: a file, a block of memory, a host's stream, a decoded object stream, a filter.
class QUILLET_API PdfSource : public ErrorForwarder, public Kernel::Countable
{
public:
    explicit PdfSource(const ErrorHandler* errorHandler = nullptr) : ErrorForwarder(errorHandler) {}
    ~PdfSource() override = default;

    /// Raises `type` where `GetErrorPlace` says.
    void OnError(Error::Type type) const override;
    /// Where in the file the bytes come from that are read now, as far as the source knows.
    virtual ErrorPlace GetErrorPlace() const { return {}; }

    virtual const std::string& GetDocName() const;
    virtual void Open(const std::string& name);
    /// Distance of the document's first byte from the start of the source.
    virtual unsigned long long GetBaseOffset() const { return 0; }
    virtual void SetBaseOffset(unsigned long long offset);
    /// Where a position lies, from the start of the source on.
    virtual unsigned long long GetPosInSource(unsigned long long pos) const { return GetBaseOffset() + pos; }
    /// Bytes from the base offset on.
    virtual unsigned long long GetLength() const { return 0; }
    virtual bool AtEnd() const = 0;
    /// A hint for reserving memory, in bytes.
    virtual unsigned long long GetEstimatedLength() const = 0;
    virtual bool IsRandomAccess() const = 0;
    /// Copies up to `size` bytes from `pos` on. Gives the count of bytes copied, which is less only at the end of the
    /// data.
    virtual int Read(unsigned long long pos, char* buf, int size) = 0;
};

} // namespace Quillet
