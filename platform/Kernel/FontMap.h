#pragma once

#include <Kernel/Counted.h>
#include <Kernel/Font.h>

#include <limits>
#include <string>
#include <unordered_map>

namespace Kernel {

/// What stands in for a font that the machine lacks.
struct FontReplacement
{
    static constexpr int c_none = std::numeric_limits<int>::max();

    Font font;
    /// How far off it is; `c_none` if there is no replacement.
    int match = c_none;
};

/// Answers what to use in place of fonts that are missing. A new map has no answers.
///
/// A document asks its map on the thread that works on the document, while it reads a font. A map that several
/// documents share is asked on all of their threads at once: it is filled before, and an override keeps out of its own
/// way.
class QUILLET_API FontMap : public Countable
{
public:
    FontMap() = default;

    /// Answers for the standard 14 fonts and the other names that documents use everywhere, with fonts of the same
    /// metrics where the machine's configuration knows some. Shared.
    static Counted<const FontMap> GetDefault();

    /// By PostScript name; a later answer takes the place of an earlier one.
    void Add(const std::string& postscriptName, const Font& replacement);
    /// What is used for `font`, which the machine lacks.
    virtual FontReplacement GetReplacement(const Font& font) const;

private:
    std::unordered_map<std::string, Font> entries;
};

} // namespace Kernel
