#pragma once

#include "document/SequentialSource.h"

#include <Kernel/Counted.h>

namespace Quillet {

class DecodeParams;

/// One decoder in a chain: it pulls bytes from `source` and gives them on decoded.
class QUILLET_API Filter : public SequentialSource
{
public:
    using SequentialSource::Read;
    using SequentialSource::SequentialSource;

    /// Gives decoded bytes, and pays for them; none once the budget is spent.
    int Read(char* buf, int size) final;

    ErrorPlace GetErrorPlace() const override { return source ? source->GetErrorPlace() : ErrorPlace(); }

    /// Kind of image data that the filter could hand over undecoded; 0 for none.
    virtual int GetCompressedImageType() const { return 0; }
    /// Takes the parameters of the stream. A filter without parameters in its stream never gets this call.
    virtual void SetDecodeParams(Kernel::Counted<const DecodeParams> params);
    /// Makes the filter hand over its image data undecoded; goes with `GetCompressedImageType`.
    virtual void AsCompressedImage() {}
    /// The filter to append behind this one, or null. Called once, after `SetDecodeParams`.
    virtual Kernel::Counted<Filter> MakePredictor() { return nullptr; }
    /// Asks for more raw input than the stream declared; gives how much was granted.
    virtual int IncreaseLength(int) { return 0; }

    void SetSource(Kernel::Counted<Filter> newSource) { source = std::move(newSource); }
    /// A filter that is unbuffered never takes more of its source than it needs: an inline image ends somewhere inside
    /// a content stream, which is read on from there.
    void SetIsUnbuffered(bool isOn) { isUnbuffered = isOn; }

    Kernel::Counted<Filter> source;
    bool isUnbuffered = false;

protected:
    /// What `Read` says, for free.
    virtual int Decode(char* buf, int size) = 0;
};

} // namespace Quillet
