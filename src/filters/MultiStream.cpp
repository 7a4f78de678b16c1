#include "filters/MultiStream.h"

#include <Quillet/Budget.h>

namespace Quillet {

MultiStream::MultiStream(const ErrorHandler* errorHandler, std::vector<Ref> streamRefs)
    : SequentialSource(errorHandler), refs(std::move(streamRefs))
{}

Kernel::Counted<SequentialSource> MultiStream::Make(const ErrorHandler* handler, const std::vector<Ref>& refs)
{
    if (refs.size() == 1) return Kernel::MakeCounted<ContentStream>(refs.front());
    return Kernel::MakeCounted<MultiStream>(handler, refs);
}

unsigned long long MultiStream::GetEstimatedLength() const
{
    return stream ? stream->GetEstimatedLength() : 0;
}

int MultiStream::Read(char* buf, int size)
{
    int count = 0;
    while (count < size && !AtEnd() && !Budget::IsSpent()) {
        if (!stream) {
            stream = Kernel::MakeCounted<ContentStream>(refs[current]);
            errorPlace = stream->GetErrorPlace();
        }
        const int got = stream->Read(buf + count, size - count);
        if (got > 0) {
            count += got;
            continue;
        }
        stream = nullptr;
        if (++current == refs.size()) break;
        buf[count++] = ' ';
    }
    return count;
}

} // namespace Quillet
