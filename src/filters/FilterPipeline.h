#pragma once

#include "document/Filter.h"

#include <string>
#include <vector>

namespace Quillet {

/// A chain of filters in which each pulls from the one before it; nothing is decoded until the last is read.
class QUILLET_API FilterPipeline : public Kernel::Countable, public ErrorForwarder
{
public:
    using ErrorForwarder::ErrorForwarder;

    /// Raises `type` where `GetErrorPlace` says.
    void OnError(Error::Type type) const override;

    /// Appends the filters by name. At one that is not known the rest is left off and `hasUnknownFilter` is set.
    void AddFilters(const std::vector<std::string>& names,
                    const std::vector<Kernel::Counted<const DecodeParams>>& params);
    void AddFilter(Kernel::Counted<Filter> filter);
    /// A new filter by its full or short name; raises UnimplementedFilter and gives null for any other name.
    Kernel::Counted<Filter> MakeFilter(const std::string& name) const;
    void SetDecodeParams(Kernel::Counted<Filter> filter, Kernel::Counted<const DecodeParams> params);
    /// Passes the flag to every filter that is in the chain now.
    void SetIsUnbuffered(bool isOn);

    /// That of its first filter.
    ErrorPlace GetErrorPlace() const { return filters.empty() ? ErrorPlace() : filters.front()->GetErrorPlace(); }
    int Read(char* buf, int size);
    void ReadAll(std::vector<char>& out);
    bool AtEnd() const;
    unsigned long long GetEstimatedLength() const;
    int GetCompressedImageType() const;
    void AsCompressedImage();

    std::vector<Kernel::Counted<Filter>> filters;
    bool hasUnknownFilter = false;
};

} // namespace Quillet
