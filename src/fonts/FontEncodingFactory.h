#pragma once

#include "fonts/FontEncoding.h"
#include "fonts/FontEncodingDifferences.h"
#include "fonts/FontTables.h"

#include <Quillet/Ref.h>

#include <Kernel/Font.h>

#include <string>
#include <vector>

namespace Quillet {

namespace FontEncodingType {

enum Type : int {
    FontEncodingIdentity = 0,
    FontEncodingStandard = 1,
    FontEncodingMacRoman = 2,
    FontEncodingWinAnsi = 3,
    FontEncodingMacExpert = 4,
    FontEncodingSymbol = 5,
    FontEncodingZapfDingbats = 6,
};

} // namespace FontEncodingType

/// The encoding of the glyphs that have a code in a column of the Latin table.
QUILLET_API Kernel::Counted<FontEncoding> MakeLatinTable(const char* name, int column);
QUILLET_API Kernel::Counted<FontEncoding> MakeSingleTable(const char* name, std::span<const SingleEncoding> rows);

/// The built-in encodings, which all documents share, and those that the fonts of a file build on them.
class QUILLET_API FontEncodingFactory
{
public:
    using Encoding = Kernel::Counted<const FontEncoding>;

    static Encoding Get(FontEncodingType::Type type);

    /// By the name in the file; one without a table of its own is told by the font.
    static FontEncodingType::Type GetNamedId(const std::string& encodingName, const std::string& fontName,
                                             bool isSymbolic);
    static Encoding GetNamed(const std::string& encodingName, const std::string& fontName, bool isSymbolic);
    static FontEncodingType::Type GetDefaultId(const std::string& fontName, bool isSymbolic);
    static Encoding GetDefault(const std::string& fontName, bool isSymbolic);

    /// The encoding of a font's encoding dictionary, differences included. A glyph name that stands for nothing raises
    /// UnimplementedTextEncoding and leaves its code as the base has it.
    static Encoding GetType1(const Ref& ref, const std::string& fontName, bool isSymbolic, const Kernel::Font& font);
    /// Only the base of it; null without one that is named, if `noDefault` or for a symbolic font.
    static Encoding GetType1Encoding(const Ref& ref, const std::string& fontName, bool isSymbolic, bool noDefault);
    /// Only the differences, or null.
    static Kernel::Counted<const FontEncodingDifferences> GetType1Differences(const Ref& ref);
    /// Takes the widths of a standard font by its own encoding; leaves them by the codes of the differences.
    static void ApplyEncodingToWidths(std::vector<double>& widths, const Ref& ref, const std::string& fontName,
                                      bool isSymbolic);
    /// The same for an encoding that is given by name.
    static void ApplyNamedEncodingToWidths(std::vector<double>& widths, const std::string& encodingName,
                                           const std::string& fontName, bool isSymbolic);

    /// From glyph numbers to characters, as the machine's font has them; null if the machine lacks it. The last ones
    /// are kept.
    static Encoding GetFromOs(const Kernel::Font& font);
    /// The character behind a name "g" and a glyph number in hexadecimal digits, by the machine's copy of the font; 0
    /// for any other name. `cache` keeps the font's encoding from call to call.
    static char32_t GetUnicodeFromGlyphIndex(const std::string& glyphName, const Kernel::Font& font, Encoding* cache);
};

} // namespace Quillet
