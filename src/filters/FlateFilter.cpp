#include "filters/FlateFilter.h"

#include "document/Limits.h"

#include <zlib.h>

#include <algorithm>

namespace Quillet {

FlateFilter::FlateFilter(const ErrorHandler* errorHandler)
    : FilterWithPredictor(errorHandler), stream(std::make_unique<z_stream>())
{
    // The oldest zlib whose interface is enough.
    if (!Check(inflateInit_(stream.get(), "1.2.5", sizeof(z_stream)) == Z_OK, Error::General)) stream.reset();
}

FlateFilter::~FlateFilter()
{
    Close();
}

void FlateFilter::Close()
{
    if (!stream) return;
    inflateEnd(stream.get());
    stream.reset();
}

int FlateFilter::Decode(char* buf, int size)
{
    if (!stream || size <= 0) return 0;
    const auto room = static_cast<unsigned>(
        std::min<unsigned long long>(static_cast<unsigned>(size), Limits::c_maxDecodedLength - stream->total_out));
    stream->next_out = reinterpret_cast<Bytef*>(buf);
    stream->avail_out = room;

    const Outcome outcome = Inflate();
    const bool isCapped = outcome == Outcome::Filled && room < static_cast<unsigned>(size);
    if (outcome == Outcome::Filled && !isCapped) return size;

    Check(outcome == Outcome::Finished, Error::ZLib);
    const int produced = static_cast<int>(room - stream->avail_out);
    Close();
    // Takes the line end and padding that writers leave behind the data out of the source.
    if (!isUnbuffered) ReadSource(static_cast<int>(inputBuffer.size()));
    return produced;
}

FlateFilter::Outcome FlateFilter::Inflate()
{
    for (;;) {
        if (stream->avail_out == 0) return Outcome::Filled;
        if (stream->avail_in == 0) FetchInput();
        const int result = inflate(stream.get(), Z_SYNC_FLUSH);
        if (result == Z_STREAM_END) return Outcome::Finished;
        if (result == Z_BUF_ERROR) {
            if (source->IncreaseLength(static_cast<int>(inputBuffer.size())) <= 0) return Outcome::Failed;
        } else if (result != Z_OK) {
            return Outcome::Failed;
        }
    }
}

void FlateFilter::FetchInput()
{
    stream->next_in = inputBuffer.data();
    stream->avail_in = static_cast<unsigned>(ReadSource(isUnbuffered ? 1 : static_cast<int>(inputBuffer.size())));
}

int FlateFilter::ReadSource(int size)
{
    return std::max(0, source->Read(reinterpret_cast<char*>(inputBuffer.data()), size));
}

unsigned long long FlateFilter::GetEstimatedLength() const
{
    if (!stream) return 0;
    const unsigned long long estimate = (source->GetEstimatedLength() + stream->avail_in + stream->total_in) * 2;
    return estimate - std::min<unsigned long long>(estimate, stream->total_out);
}

} // namespace Quillet
