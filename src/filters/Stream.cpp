#include "filters/Stream.h"

#include "filters/CryptFilter.h"
#include "document/DecodeParams.h"
#include "filters/RawFilter.h"

#include <algorithm>

namespace Quillet {

Stream::Stream(const Ref& ref) : Stream(Kernel::MakeCounted<Dictionary>(ref)) {}

Stream::Stream(Kernel::Counted<Dictionary> dictionary)
    : Stream(Kernel::MakeCounted<FilterPipeline>(dictionary->GetErrorHandler()), dictionary)
{}

Stream::Stream(Kernel::Counted<FilterPipeline> newPipeline, Kernel::Counted<Dictionary> dictionary)
    : SequentialSource(dictionary->GetErrorHandler()), pipeline(std::move(newPipeline))
{
    AddStreamFilters(dictionary);
}

ContentStream::ContentStream(const Ref& ref) : Stream(ref)
{
    if (HasUnknownFilter()) pipeline->filters.clear();
}

void Stream::AddStreamFilters(Kernel::Counted<Dictionary> dictionary)
{
    const unsigned long long start = dictionary->GetStreamPos();
    const int length = std::max(dictionary->GetInt("Length", 0), 0);
    pipeline->AddFilter(Kernel::MakeCounted<RawFilter>(
        dictionary->source, start, static_cast<unsigned long long>(length), dictionary->object.GetErrorPlace(start)));

    std::vector<std::string> names;
    dictionary->GetNameVec("Filter", names);
    // A stream that names the filter itself has it where it wants it.
    if (dictionary->IsEncrypted() && std::ranges::find(names, "Crypt") == names.end())
        pipeline->AddFilter(Kernel::MakeCounted<CryptFilter>(dictionary->object));

    std::vector<Kernel::Counted<const DecodeParams>> params;
    // The last is a misspelling that producers have used.
    for (const char* key : {"DecodeParms", "DP", "DecodeParams"}) {
        if (!dictionary->DictionarySeek(key)) continue;
        params = GetDecodeParams(dictionary, dictionary->object);
        break;
    }
    pipeline->AddFilters(names, params);
}

} // namespace Quillet
