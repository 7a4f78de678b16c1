#pragma once

#include "document/Dictionary.h"
#include "filters/FilterPipeline.h"

namespace Quillet {

/// The decoded bytes of a stream object, once, from front to back.
class QUILLET_API Stream : public SequentialSource
{
public:
    explicit Stream(const Ref& ref);
    explicit Stream(Kernel::Counted<Dictionary> dictionary);
    /// Adds the stream's filters behind those that `pipeline` has.
    Stream(Kernel::Counted<FilterPipeline> pipeline, Kernel::Counted<Dictionary> dictionary);

    int Read(char* buf, int size) override { return pipeline->Read(buf, size); }
    using SequentialSource::Read;
    void ReadAll(std::vector<char>& out) override { pipeline->ReadAll(out); }
    ErrorPlace GetErrorPlace() const override { return pipeline->GetErrorPlace(); }
    bool AtEnd() const override { return pipeline->AtEnd(); }
    unsigned long long GetEstimatedLength() const override { return pipeline->GetEstimatedLength(); }
    int GetCompressedImageType() const { return pipeline->GetCompressedImageType(); }
    void AsCompressedImage() { pipeline->AsCompressedImage(); }
    /// True if a filter is not known here: the bytes are then those before it.
    bool HasUnknownFilter() const { return pipeline->hasUnknownFilter; }

    Kernel::Counted<FilterPipeline> pipeline;

private:
    void AddStreamFilters(Kernel::Counted<Dictionary> dictionary);
};

/// A stream of operators. One with a filter that is not known is empty: coded bytes would be run as operators.
class QUILLET_API ContentStream : public Stream
{
public:
    explicit ContentStream(const Ref& ref);
};

} // namespace Quillet
