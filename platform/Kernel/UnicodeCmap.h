#pragma once

#include <Kernel/Countable.h>
#include <Kernel/Counted.h>
#include <Kernel/Font.h>

#include <unordered_map>
#include <vector>

namespace Kernel {

/// Which characters a font of the machine has, and their glyphs. Immutable.
class QUILLET_API UnicodeCmap : public Countable
{
public:
    struct Range
    {
        char32_t first;
        char32_t last;
    };

    /// Null if the machine lacks the font.
    static Counted<const UnicodeCmap> Make(const Font& font);

    /// In ascending order, without overlaps.
    const std::vector<Range>& GetRanges() const { return ranges; }
    /// 0 for a character that the font lacks.
    int GetGlyphIndex(char32_t character) const;

private:
    std::vector<Range> ranges;
    std::unordered_map<char32_t, int> glyphs;
};

} // namespace Kernel
