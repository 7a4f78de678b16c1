#include <Story/Glyph.h>

#include <array>

namespace Story {

namespace {

constexpr char32_t c_objectReplacement = 0xFFFC;

} // namespace

Glyph::~Glyph() = default;

char32_t HardBreakGlyph::GetCharacter() const
{
    switch (type) {
    case HardBreak::Line:
        return U'\n';
    case HardBreak::Page:
        return U'\f';
    case HardBreak::Column:
        break;
    }
    return c_objectReplacement;
}

char32_t ListNumberGlyph::GetCharacter() const
{
    return c_objectReplacement;
}

Kernel::Counted<const Glyph> ListNumberGlyph::EncodeLevel(int level)
{
    return Kernel::MakeCounted<ListNumberGlyph>(level);
}

GlyphFactory& GlyphFactory::Instance()
{
    static GlyphFactory factory;
    return factory;
}

Kernel::Counted<const Glyph> GlyphFactory::GetHardBreak(HardBreak::Type type) const
{
    using Break = Kernel::Counted<const Glyph>;
    static const auto& breaks = *new std::array<Break, 3>{Kernel::MakeCounted<HardBreakGlyph>(HardBreak::Line),
                                                          Kernel::MakeCounted<HardBreakGlyph>(HardBreak::Column),
                                                          Kernel::MakeCounted<HardBreakGlyph>(HardBreak::Page)};
    return breaks.at(static_cast<std::size_t>(type) - HardBreak::Line);
}

} // namespace Story
