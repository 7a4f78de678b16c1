#pragma once

#include <Kernel/Export.h>

#include <span>
#include <string>

namespace Quillet {

// Names stand in the rows themselves: a pointer each would be set anew in every process, and thousands of them are a
// quarter of what it takes to load the library.

/// A glyph name of the Adobe Glyph List or the Zapf Dingbats list. Where the list has several characters, the first.
struct GlyphListEntry
{
    char name[40];
    char32_t character;
};

/// A glyph and its codes in four encodings (ISO 32000-2, D.2); 0 where an encoding lacks it.
struct LatinEncoding
{
    static constexpr int c_standard = 0;
    static constexpr int c_macRoman = 1;
    static constexpr int c_winAnsi = 2;
    static constexpr int c_pdfDoc = 3;

    unsigned char codes[4];
    char name[16];
};

struct SingleEncoding
{
    unsigned char code;
    char name[20];
};

/// A glyph of a standard font: its code in the font's own encoding, -1 for none, and its width in thousandths.
struct StandardGlyph
{
    short code;
    short width;
    char name[16];
};

struct StandardFontMetrics
{
    const char* name;
    /// By code, those without one last. The first is the space.
    std::span<const StandardGlyph> glyphs;
    /// As in a font descriptor.
    int flags;
};

// Sorted by name.
extern QUILLET_API const std::span<const GlyphListEntry> c_glyphList;
extern QUILLET_API const std::span<const GlyphListEntry> c_zapfDingbatsList;

extern QUILLET_API const std::span<const LatinEncoding> c_latinEncodings;
extern QUILLET_API const std::span<const SingleEncoding> c_macExpertEncoding;
extern QUILLET_API const std::span<const SingleEncoding> c_symbolEncoding;
extern QUILLET_API const std::span<const SingleEncoding> c_zapfDingbatsEncoding;

extern QUILLET_API const std::span<const StandardFontMetrics> c_standardFontMetrics;

/// The metrics of one of the standard 14 fonts; null for any other name.
QUILLET_API const StandardFontMetrics* GetStandardFontMetrics(const std::string& name);

} // namespace Quillet
