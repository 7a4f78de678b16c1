#pragma once

#include <Quillet/ErrorForwarder.h>
#include <Quillet/Ref.h>
#include <Quillet/RefCacheable.h>

#include <Kernel/Counted.h>
#include <Kernel/Font.h>

#include <string>
#include <vector>

namespace Story {
class GlyphAtts;
}

namespace Quillet {

struct Char;
class Dictionary;
class TextState;

/// A font of the document: it turns shown strings into characters with their widths, and names the font of the machine
/// that they get. Glyph outlines in the file are not read.
class QUILLET_API Font : public RefCacheable, public ErrorForwarder
{
public:
    /// The font of a reference, kept with its object; null for a reference to nothing. The name is that of the
    /// resource, and plays no part.
    static Kernel::Counted<const Font> Make(const Ref& ref, const std::string& name);
    /// For text whose font is missing: the machine's default. Shared until the process ends.
    static const Kernel::Counted<const Font>& GetDefaultFont();

    /// False for kinds whose glyphs are not text of a font. What text they have comes through all the same.
    virtual bool IsSupported() const { return true; }
    /// Whether the machine has the font itself.
    virtual bool IsAvailable() const = 0;
    virtual std::string GetPostscriptName() const { return GetKernelFont().postscriptName; }
    /// What the document asks for.
    virtual const Kernel::Font& GetKernelFont() const = 0;
    virtual bool operator==(const Font& other) const = 0;
    /// Puts the font that text will use into attributes.
    virtual void AddTo(Story::GlyphAtts& atts) const = 0;
    /// Appends the characters of a string; gives the sum of their advances, in points of line space.
    virtual double TextOut(std::vector<Char>& chars, const std::vector<char>& string, const TextState& state) const = 0;
    /// How many ems of the machine's font an em of this one is: not 1 for a font whose units are its own affair.
    virtual double GetSizeScale() const { return 1; }
    /// Whether its own matrix turns its glyphs upside down.
    virtual bool IsMirrored() const { return false; }

    std::size_t GetDispensableBytes() const override { return sizeof *this; }

    void SetIsSpaceDefined(bool isDefined, int code)
    {
        isSpaceDefined = isDefined;
        spaceCode = code;
    }

    std::string subtype = "Type1";
    /// A gap in a line can be written as a space character.
    bool isSpaceDefined = true;
    /// By which the space is reached where U+0020 does not reach it; -1 otherwise.
    int spaceCode = -1;

protected:
    Font() = default;
    explicit Font(Dictionary& dictionary);
};

} // namespace Quillet
