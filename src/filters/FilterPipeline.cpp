#include "filters/FilterPipeline.h"

#include "filters/Ascii85Filter.h"
#include "filters/AsciiHexFilter.h"
#include "filters/CryptFilter.h"
#include "document/DecodeParams.h"
#include "filters/FlateFilter.h"
#include "filters/LzwFilter.h"
#include "filters/RunLengthFilter.h"
#include "document/Limits.h"

#include <Quillet/Budget.h>

#include <Kernel/Trace.h>

namespace Quillet {

namespace {

struct FilterMaker
{
    const char* fullName;
    const char* shortName;
    Kernel::Counted<Filter> (*make)();
};

template <typename T>
Kernel::Counted<Filter> Make()
{
    return Kernel::MakeCounted<T>();
}

constexpr FilterMaker c_filterMakers[] = {
    {"FlateDecode", "Fl", Make<FlateFilter>},      {"ASCIIHexDecode", "AHx", Make<AsciiHexFilter>},
    {"ASCII85Decode", "A85", Make<Ascii85Filter>}, {"RunLengthDecode", "RL", Make<RunLengthFilter>},
    {"LZWDecode", "LZW", Make<LzwFilter>},         {"Crypt", nullptr, Make<CryptFilter>},
};

} // namespace

void FilterPipeline::OnError(Error::Type type) const
{
    if (!handler) return ErrorForwarder::OnError(type);
    handler->OnErrorAt(type, GetErrorPlace());
}

void FilterPipeline::AddFilters(const std::vector<std::string>& names,
                                const std::vector<Kernel::Counted<const DecodeParams>>& params)
{
    if (!Check(names.size() <= Limits::c_maxFilters, Error::General)) {
        filters.clear();
        hasUnknownFilter = true;
        return;
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        // What is null, a keyword where a name was read, is not there (ISO 32000-2, 7.3.9).
        if (names[i].empty() || names[i] == "null") continue;
        Kernel::Counted<Filter> filter = MakeFilter(names[i]);
        if (!filter) {
            hasUnknownFilter = true;
            return;
        }
        AddFilter(filter);
        if (i < params.size()) SetDecodeParams(filter, params[i]);
    }
}

void FilterPipeline::AddFilter(Kernel::Counted<Filter> filter)
{
    // The first one only reads.
    if (!filters.empty()) Budget::Spend(Limits::c_decoderUnits);
    filter->SetErrorHandler(GetErrorHandler());
    if (!filters.empty()) filter->SetSource(filters.back());
    filters.push_back(std::move(filter));
}

Kernel::Counted<Filter> FilterPipeline::MakeFilter(const std::string& name) const
{
    for (const FilterMaker& maker : c_filterMakers) {
        if (name == maker.fullName || (maker.shortName && name == maker.shortName)) return maker.make();
    }
    Kernel::Trace("Quillet Unknown filter: %1\n", name);
    OnError(Error::UnimplementedFilter);
    return nullptr;
}

void FilterPipeline::SetDecodeParams(Kernel::Counted<Filter> filter, Kernel::Counted<const DecodeParams> params)
{
    filter->SetDecodeParams(params);
    if (Kernel::Counted<Filter> predictor = filter->MakePredictor()) {
        AddFilter(predictor);
        predictor->SetDecodeParams(params);
    }
}

void FilterPipeline::SetIsUnbuffered(bool isOn)
{
    for (const Kernel::Counted<Filter>& filter : filters)
        filter->SetIsUnbuffered(isOn);
}

int FilterPipeline::Read(char* buf, int size)
{
    return filters.empty() ? 0 : filters.back()->Read(buf, size);
}

void FilterPipeline::ReadAll(std::vector<char>& out)
{
    if (!filters.empty()) filters.back()->ReadAll(out);
}

bool FilterPipeline::AtEnd() const
{
    return filters.empty() || filters.back()->AtEnd();
}

unsigned long long FilterPipeline::GetEstimatedLength() const
{
    return filters.empty() ? 0 : filters.back()->GetEstimatedLength();
}

int FilterPipeline::GetCompressedImageType() const
{
    return filters.size() < 2 ? 0 : filters.back()->GetCompressedImageType();
}

void FilterPipeline::AsCompressedImage()
{
    if (!filters.empty()) filters.back()->AsCompressedImage();
}

} // namespace Quillet
