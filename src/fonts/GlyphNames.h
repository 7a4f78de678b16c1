#pragma once

#include "fonts/CodeSequence.h"

#include <Kernel/Export.h>

#include <string>
#include <string_view>

namespace Quillet {

/// Appends the characters that a glyph name stands for, by the rules of the Adobe Glyph List specification, and for
/// names of the form "MT" and a number that number. A name that stands for nothing appends nothing.
QUILLET_API void GetUnicodeSequenceFromAdobeName(std::string_view name, bool isZapfDingbats, CodeSequence& out);

/// The first of them, or 0.
QUILLET_API char32_t GetUnicodeFromAdobeName(std::string_view name, bool isZapfDingbats);

/// The first name, in the order of bytes, of a character; empty for one that the glyph list does not have.
QUILLET_API std::string GetGlyphNameFromUnicode(char32_t character);

} // namespace Quillet
