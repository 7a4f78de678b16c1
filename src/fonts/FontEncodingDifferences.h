#pragma once

#include <Quillet/RefCacheable.h>

#include <map>
#include <string>

namespace Quillet {

/// The glyph names by which a font departs from its base encoding.
class QUILLET_API FontEncodingDifferences : public RefCacheable
{
public:
    void Add(int code, const std::string& name) { names[code] = name; }
    /// Empty for a code without one.
    const std::string& GetName(int code) const
    {
        static const std::string c_none;
        const auto found = names.find(code);
        return found == names.end() ? c_none : found->second;
    }

    std::map<int, std::string> names;
};

} // namespace Quillet
