#pragma once

#include <Kernel/Font.h>

#include <string>

namespace Quillet {

/// What a document says of one of its fonts, and what text in it gets here.
struct FontInfo
{
    /// As in the file, with the prefix of a subset.
    std::string name;
    /// "Type1", "TrueType", "Type0" and so on.
    std::string subtype;
    /// The file has the font's outlines.
    bool isEmbedded = false;
    /// The machine has the font itself.
    bool isAvailable = false;
    /// What text is set in; without a name and a family for a kind of font that has no text.
    Kernel::Font actualFont;
};

} // namespace Quillet
