#include "document/MultiStream.h"

namespace Quillet {

MultiStream::MultiStream(const ErrorHandler* errorHandler, const std::vector<Ref>& refs)
    : SequentialSource(errorHandler)
{
    streams.reserve(refs.size());
    for (const Ref& ref : refs)
        streams.push_back(Kernel::MakeCounted<Stream>(ref));
}

Kernel::Counted<SequentialSource> MultiStream::Make(const ErrorHandler* handler, const std::vector<Ref>& refs)
{
    if (refs.size() == 1) return Kernel::MakeCounted<Stream>(refs.front());
    return Kernel::MakeCounted<MultiStream>(handler, refs);
}

unsigned long long MultiStream::GetEstimatedLength() const
{
    unsigned long long length = streams.empty() ? 0 : streams.size() - 1;
    for (const Kernel::Counted<Stream>& stream : streams)
        length += stream->GetEstimatedLength();
    return length;
}

int MultiStream::Read(char* buf, int size)
{
    int count = 0;
    while (count < size && current < streams.size()) {
        const int got = streams[current]->Read(buf + count, size - count);
        if (got > 0) {
            count += got;
            continue;
        }
        if (++current == streams.size()) break;
        buf[count++] = ' ';
    }
    return count;
}

} // namespace Quillet
