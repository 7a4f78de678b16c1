#pragma once

#include <Quillet/Ref.h>

#include <Kernel/Counted.h>

#include <string>
#include <unordered_map>
#include <vector>

namespace Quillet {

class Parser;

/// The parameters of one filter of a stream.
class QUILLET_API DecodeParams : public Kernel::Countable
{
public:
    DecodeParams() = default;
    /// Reads a dictionary's entries from `parser`, which stands behind the opening token, up to the closing one.
    DecodeParams(Kernel::NonCounted<Parser> parser, const Ref& stream);

    /// The value as an integer: a boolean is 0 or 1, a real is rounded. `fallback` if the key is absent.
    int GetInt(const char* key, int fallback) const;
    /// The reference behind `key`, or a null one.
    Ref GetRef(const char* key) const;
    /// The name behind `key`, or an empty text.
    std::string GetName(const char* key) const;

    std::unordered_map<std::string, int> ints;
    std::unordered_map<std::string, Ref> refs;
    std::unordered_map<std::string, std::string> names;
    /// The stream that the parameters belong to; null for an empty object.
    Ref owner;
};

/// The parameters of each filter of a stream, by position; `parser` stands before the value.
QUILLET_API std::vector<Kernel::Counted<const DecodeParams>> GetDecodeParams(Kernel::Counted<Parser> parser,
                                                                             const Ref& owner);

} // namespace Quillet
