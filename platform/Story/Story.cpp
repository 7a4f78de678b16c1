#include <Story/Story.h>

#include <Kernel/CharTraits.h>

namespace Story {

namespace {

constexpr char32_t c_paragraphEnd = 0x2029;

} // namespace

std::u32string Story::Paragraph::GetText() const
{
    std::u32string text;
    for (const Run& run : runs)
        text += run.text;
    return text;
}

void Story::SetParagraphAtts(const Kernel::Consolidated<ParagraphAtts>& atts)
{
    paragraphs.push_back({atts ? atts : ParagraphAtts::GetDefault(), {}});
    isEnded = false;
}

void Story::SetGlyphAtts(const Kernel::Consolidated<GlyphAtts>& atts)
{
    glyphAtts = atts;
}

void Story::Add(char32_t character)
{
    if (character == 0) return;
    // Text behind an end, without attributes of its own, goes on with those of the paragraph before.
    if (isEnded) SetParagraphAtts(paragraphs.empty() ? nullptr : paragraphs.back().atts);
    if (character == c_paragraphEnd) {
        isEnded = true;
        return;
    }
    if (!glyphAtts) glyphAtts = GlyphAtts::GetDefault();
    std::vector<Run>& runs = paragraphs.back().runs;
    if (runs.empty() || !(runs.back().atts == glyphAtts)) runs.push_back({glyphAtts, {}});
    runs.back().text += character;
}

void Story::AddGlyphIndex(int, char32_t character)
{
    // Nobody knows what the glyph stands for, but that something does.
    if (character == 0) character = Kernel::CharTraits::c_replacement;
    Add(character);
}

void Story::Add(const Kernel::Counted<const Glyph>& glyph)
{
    if (glyph) Add(glyph->GetCharacter());
}

void Story::Flush()
{
    isEnded = true;
}

} // namespace Story
