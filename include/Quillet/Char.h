#pragma once

#include <Kernel/Consolidated.h>
#include <Renderer/FontMetrics.h>
#include <Story/GlyphAtts.h>

namespace Quillet {

/// One placed character of a line.
struct QUILLET_API Char
{
    /// 0 when only a glyph is known, 9 for a tab.
    char32_t unicode = 0;
    /// The code or CID by which the file has the glyph, a hint at best; -1 for a part of a sequence.
    int glyphIndex = -1;
    /// The code of a sequence of several characters, on its first; -1 otherwise.
    int charCode = -1;
    /// The code of the font's space; -1 where U+0020 is that.
    int spaceCode = -1;
    /// Advance in points of the line, with all spacing.
    double width = 0;
    Kernel::Consolidated<Story::GlyphAtts> atts;
    bool isSpace = false;
    /// The font has a space, so that a gap can become one.
    bool isSpaceDefined = true;
    /// The machine had the font when the page was read.
    bool isFontAvailable = false;
    /// A positive gap was added behind this character.
    bool isKerned = false;

    bool IsTab() const { return unicode == '\t'; }
    double GetSize() const { return atts->GetSize(); }
    Renderer::GlyphMetrics GetGlyphMetrics() const;
    Renderer::GlyphMetrics GetGlyphMetrics(const Renderer::FontMetrics& metrics) const;
    /// How much wider this space is than that of its font, letter spacing aside.
    double GetWordSpace() const;
    /// Advance of a character in this one's font, size and scale, in points.
    double GetFontWidthOf(char32_t character) const;
};

} // namespace Quillet
