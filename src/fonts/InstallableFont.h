#pragma once

#include "fonts/Font.h"

#include <Kernel/FontMap.h>

namespace Quillet {

/// A font that a machine may have. It keeps what the document asked for, and what text will use.
class QUILLET_API InstallableFont : public Font
{
public:
    bool IsAvailable() const override { return isAvailable; }
    std::string GetPostscriptName() const override { return requestedFont.postscriptName; }
    const Kernel::Font& GetKernelFont() const override { return requestedFont; }
    bool operator==(const Font& other) const override;
    void AddTo(Story::GlyphAtts& atts) const override;
    virtual void ReadDescriptor(Dictionary& dictionary);

    /// First six capitals and a plus sign.
    static bool HasSubsetPrefix(const std::string& name);
    /// What stands before the last hyphen that has something before it; empty if there is none.
    static std::string StripInstanceSuffix(const std::string& name);
    static bool StripSuffix(std::string& name, std::string_view suffix);

    /// Width of a code without one, in thousandths of the size.
    double missingWidth = 0;
    Kernel::Font requestedFont;
    Kernel::Font effectiveFont;
    /// The name in the file without the prefix of a subset. The one that is asked for may be shorter.
    std::string documentName;
    /// Of the font descriptor (ISO 32000-2, table 121).
    int flags = 0;
    bool isAvailable = false;

protected:
    static constexpr int c_fixedPitch = 1;
    static constexpr int c_symbolic = 4;
    static constexpr int c_script = 8;
    static constexpr int c_italic = 64;

    /// The machine's default font.
    InstallableFont();
    explicit InstallableFont(Dictionary& dictionary);

    bool IsSymbolic() const { return (flags & c_symbolic) != 0; }
    /// Whether the machine has the font; then both fonts are the machine's.
    bool MapFonts();
    void UpdateEffectiveFont(const Kernel::FontMap* fontMap);
    void SetFlags(int newFlags);
    void SetIsMonospaced();

private:
    std::string MakeUniqueName(Dictionary& dictionary) const;
    void SetUniqueName(const std::string& name, const Kernel::FontMap* fontMap);
    bool StripMultipleMasterSuffix();
    bool TryParsePostscriptName();
    void GuessStyle(const Kernel::FontMap* fontMap);
    /// Takes the slant and the width from the words at the end of a name; the answer is the weight, 0 for none.
    int GuessStyleFrom(std::string name);
    void ReadStyle(const Ref& ref);
    void SetIsScript();
    /// Takes a font of the machine for both; false for an empty one.
    bool Use(const Kernel::Font& found);
    /// The machine's variable font of the family, set as the one that is asked for; empty for none.
    Kernel::Font FindVariation() const;
};

/// The map by which a document's fonts are replaced; null without a document.
QUILLET_API const Kernel::FontMap* GetFontMap(const Ref& ref);

} // namespace Quillet
