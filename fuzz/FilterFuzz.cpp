/// One stream filter, named by the macro FILTER, on hostile parameters and data.
///
/// The first bytes of the input are the parameters, the rest is what the source holds. Beside what the sanitizers see,
/// the target insists that the bytes delivered do not depend on how they are asked for.

#include "support/BytesFilter.h"

#include "filters/Ascii85Filter.h"
#include "filters/AsciiHexFilter.h"
#include "document/DecodeParams.h"
#include "filters/FlateFilter.h"
#include "filters/LzwFilter.h"
#include "filters/PngFilter.h"
#include "filters/RunLengthFilter.h"
#include "filters/Tiff2Filter.h"

#include <cstdint>
#include <cstdlib>

namespace {

using namespace Quillet;

/// A packed kilobyte may stand for a megabyte; more of it shows nothing new.
constexpr std::size_t c_maxOutput = 1 << 20;

constexpr std::size_t c_headSize = 8;

Kernel::Counted<const DecodeParams> MakeParams(const std::uint8_t* head)
{
    auto params = Kernel::MakeCounted<DecodeParams>();
    params->ints["Predictor"] = head[0] % 20;
    params->ints["EarlyChange"] = head[1] & 1;
    params->ints["Colors"] = static_cast<std::int8_t>(head[2]);
    params->ints["BitsPerComponent"] = static_cast<std::int8_t>(head[3]);
    // The shift brings in rows beyond every cap, and negative ones.
    params->ints["Columns"] = static_cast<int>(static_cast<unsigned>(head[4] | head[5] << 8) << head[6] % 32);
    return params;
}

std::string Decode(const std::uint8_t* data, std::size_t size, int step)
{
    auto source = Kernel::MakeCounted<BytesFilter>(
        std::string(reinterpret_cast<const char*>(data) + c_headSize, size - c_headSize));
    // Part of the data may lie behind the length that the stream declares.
    if (data[7] & 1) source->declared -= source->declared * data[7] / 256;
    auto filter = Kernel::MakeCounted<FILTER>();
    filter->SetSource(source);
    filter->SetIsUnbuffered((data[7] & 2) != 0);
    filter->SetDecodeParams(MakeParams(data));
    std::string out;
    std::string piece(static_cast<std::size_t>(step), '\0');
    while (out.size() < c_maxOutput) {
        (void)filter->GetEstimatedLength();
        (void)filter->AtEnd();
        const int count = filter->Read(piece.data(), step);
        if (count <= 0) break;
        out.append(piece, 0, static_cast<std::size_t>(count));
    }
    if (out.size() > c_maxOutput) out.resize(c_maxOutput);
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < c_headSize) return 0;
    if (Decode(data, size, 4096) != Decode(data, size, 61)) std::abort();
    return 0;
}
