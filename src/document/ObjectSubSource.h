#pragma once

#include "document/ObjectSource.h"

namespace Quillet {

/// One object of an object stream. Positions count from 1, since position 0 means "nowhere" in a reference.
class QUILLET_API ObjectSubSource : public PdfSource
{
public:
    ObjectSubSource(Kernel::Counted<ObjectSource> objectStream, unsigned long long objectStart,
                    unsigned long long objectLength)
        : PdfSource(objectStream->GetErrorHandler()), parent(std::move(objectStream)), start(objectStart),
          length(objectLength)
    {}

    bool IsRandomAccess() const override { return true; }
    bool AtEnd() const override { return false; }
    unsigned long long GetLength() const override { return length; }
    unsigned long long GetEstimatedLength() const override { return length; }
    int Read(unsigned long long pos, char* buf, int size) override;

    Kernel::Counted<ObjectSource> parent;
    unsigned long long start;
    unsigned long long length;
};

} // namespace Quillet
