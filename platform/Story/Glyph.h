#pragma once

#include <Kernel/Countable.h>
#include <Kernel/Counted.h>

namespace Story {

/// Something in a text that is no character: a forced break, the place of a list's number.
class QUILLET_API Glyph : public Kernel::Countable
{
public:
    ~Glyph() override;
    /// What stands for it where only characters can be: U+000A for a line break, U+FFFC for what has none.
    virtual char32_t GetCharacter() const = 0;
};

namespace HardBreak {
enum Type : int { Line = 1, Column = 2, Page = 3 };
} // namespace HardBreak

/// A break that an author set.
class QUILLET_API HardBreakGlyph : public Glyph
{
public:
    explicit HardBreakGlyph(HardBreak::Type newType) : type(newType) {}
    char32_t GetCharacter() const override;

    const HardBreak::Type type;
};

/// Where a list's number of a level stands in the text of its markers.
class QUILLET_API ListNumberGlyph : public Glyph
{
public:
    explicit ListNumberGlyph(int newLevel) : level(newLevel) {}
    char32_t GetCharacter() const override;
    /// The glyph for a level from 0.
    static Kernel::Counted<const Glyph> EncodeLevel(int level);

    const int level;
};

/// Makes glyphs that are shared: there is one of each kind.
class QUILLET_API GlyphFactory
{
public:
    static GlyphFactory& Instance();
    Kernel::Counted<const Glyph> GetHardBreak(HardBreak::Type type) const;
};

} // namespace Story
