#pragma once

#include "fonts/CodeSequence.h"
#include "fonts/GlyphNames.h"

#include <Quillet/RefCacheable.h>

#include <map>
#include <string>

namespace Quillet {

/// The glyph names by which a font departs from its base encoding.
class QUILLET_API FontEncodingDifferences : public RefCacheable
{
public:
    void Add(int code, const std::string& name)
    {
        names[code] = name;
        CodeSequence sequence;
        GetUnicodeSequenceFromAdobeName(name, false, sequence);
        sequences[code] = sequence;
    }
    /// Empty for a code without one.
    const std::string& GetName(int code) const
    {
        static const std::string c_none;
        const auto found = names.find(code);
        return found == names.end() ? c_none : found->second;
    }

    /// What the glyph stands for by its name; empty for a code without one. Names may be long, and text asks at each
    /// character.
    CodeSequence GetSequence(int code) const
    {
        const auto found = sequences.find(code);
        return found == sequences.end() ? CodeSequence() : found->second;
    }

    std::map<int, std::string> names;
    std::map<int, CodeSequence> sequences;
};

} // namespace Quillet
