#pragma once

#include <Story/Glyph.h>
#include <Story/GlyphAtts.h>
#include <Story/ParagraphAtts.h>

namespace Story {

/// What a column of text pushes itself into: the host's story. Called on the thread that the column belongs to.
class QUILLET_API GlyphSink
{
public:
    virtual ~GlyphSink();

    /// Begins a paragraph.
    virtual void SetParagraphAtts(const Kernel::Consolidated<ParagraphAtts>& atts) = 0;
    /// For the glyphs that follow.
    virtual void SetGlyphAtts(const Kernel::Consolidated<GlyphAtts>& atts) = 0;
    /// One character; U+2029 ends a paragraph.
    virtual void Add(char32_t character) = 0;
    /// A character by the number that it has in the font of the file, which is a hint: the font that is used here may
    /// number its glyphs otherwise. The character is 0 where the file does not say which it is.
    virtual void AddGlyphIndex(int glyphIndex, char32_t character) = 0;
    virtual void Add(const Kernel::Counted<const Glyph>& glyph) = 0;
    /// The text is complete.
    virtual void Flush() = 0;
};

} // namespace Story
