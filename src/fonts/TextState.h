#pragma once

#include <Quillet/Char.h>

#include <Kernel/Consolidated.h>
#include <Kernel/Counted.h>
#include <Kernel/Export.h>
#include <Story/GlyphAtts.h>

#include <utility>
#include <vector>

namespace Quillet {

struct CodeSequence;
class Font;

/// What a glyph is put through within its line: scales and a shear along the baseline.
struct TextTransform
{
    double x = 1;
    double y = 1;
    double shear = 0;

    friend bool operator==(const TextTransform&, const TextTransform&) = default;
};

/// How text is set: the part of a graphics state from which a font makes characters. Lengths are in text space.
class QUILLET_API TextState
{
public:
    TextState();
    TextState(const TextState& other);
    TextState(TextState&& other) noexcept;
    ~TextState();

    void SetTextTransform(const TextTransform& transform) { textTransform = transform; }
    void SetGlyphAtts(Kernel::Consolidated<Story::GlyphAtts> atts) { glyphAtts = std::move(atts); }
    /// Moves the pen off the line's baseline, downward.
    void SetAdvance(double distance);
    void AddAdvanceTo(Story::GlyphAtts& atts) const;

    /// Appends what a code stands for, with a width in thousandths of the size; gives the advance in line space.
    double AddChars(std::vector<Char>& chars, const CodeSequence& sequence, int code, double width) const;
    /// Letter spacing belongs to the code, so that only the last character of one has it.
    double AddChar(std::vector<Char>& chars, char32_t unicode, int glyphIndex, int charCode, double width,
                   bool isEndOfCode = true) const;
    /// What a length of text space becomes in line space along the baseline, in percent.
    double GetAdvancePercent() const { return textTransform.x * textWidth * fontSign; }

    double charSpace = 0;
    double wordSpace = 0;
    double textWidth = 100;
    double textRise = 0;
    double fontSize = 0;
    double fontSign = 1;
    double leading = 0;
    /// Null stands for the default font, which is not loaded before text needs it.
    Kernel::Counted<const Font> font;
    /// Bit 1: fill, bit 0: stroke.
    int renderFlags = 2;
    int isTextClip = 0;
    TextTransform textTransform;
    /// Of the pen below the line's baseline.
    double advance = 0;
    Kernel::Consolidated<Story::GlyphAtts> glyphAtts;
};

} // namespace Quillet
