#pragma once

#include <Story/GlyphSink.h>

#include <string>
#include <vector>

namespace Story {

/// A text of paragraphs and runs: keeps what is pushed into it.
class QUILLET_API Story : public Kernel::Countable, public GlyphSink
{
public:
    /// Characters that look the same. A forced line break is U+000A, and a glyph whose character is not known is
    /// nothing.
    struct Run
    {
        Kernel::Consolidated<GlyphAtts> atts;
        std::u32string text;
    };

    struct Paragraph
    {
        /// Never null.
        Kernel::Consolidated<ParagraphAtts> atts;
        /// None is empty, and neighbours differ in their attributes.
        std::vector<Run> runs;

        std::u32string GetText() const;
    };

    const std::vector<Paragraph>& GetParagraphs() const { return paragraphs; }

    void SetParagraphAtts(const Kernel::Consolidated<ParagraphAtts>& atts) override;
    void SetGlyphAtts(const Kernel::Consolidated<GlyphAtts>& atts) override;
    void Add(char32_t character) override;
    void AddGlyphIndex(int glyphIndex, char32_t character) override;
    void Add(const Kernel::Counted<const Glyph>& glyph) override;
    void Flush() override;

private:
    std::vector<Paragraph> paragraphs;
    Kernel::Consolidated<GlyphAtts> glyphAtts;
    /// The last paragraph has had its end.
    bool isEnded = true;
};

} // namespace Story
