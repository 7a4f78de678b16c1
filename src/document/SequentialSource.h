#pragma once

#include "document/Limits.h"
#include "document/PdfSource.h"

#include <cstddef>
#include <vector>

namespace Quillet {

/// Base of everything that can only be read forward.
class QUILLET_API SequentialSource : public PdfSource
{
public:
    using PdfSource::PdfSource;

    bool IsRandomAccess() const override { return false; }
    /// Reads forward, whatever `pos` says.
    int Read(unsigned long long pos, char* buf, int size) override;

    /// Takes up to `size` bytes, fewer only where the data has a joint or ends; 0 at the end.
    virtual int Read(char* buf, int size) = 0;
    /// Takes `size` bytes over all joints, fewer only at the end; gives how many.
    std::size_t ReadUpTo(char* buf, std::size_t size);
    /// Appends all that is left.
    virtual void ReadAll(std::vector<char>& out);
    /// The same for what is held in one piece, up to the cap of such: metadata, profiles, tables.
    void ReadBlock(std::vector<char>& out) { AppendAll(out, Limits::c_maxBlock); }

protected:
    void AppendAll(std::vector<char>& out, unsigned long long maxLength);
};

} // namespace Quillet
