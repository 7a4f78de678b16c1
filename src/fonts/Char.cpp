#include <Quillet/Char.h>

namespace Quillet {

using Story::GlyphAtt::HorizontalScale;
using Story::GlyphAtt::LetterSpacing;

Renderer::GlyphMetrics Char::GetGlyphMetrics() const
{
    return GetGlyphMetrics(*atts->GetFontMetrics());
}

Renderer::GlyphMetrics Char::GetGlyphMetrics(const Renderer::FontMetrics& metrics) const
{
    return unicode != 0 ? metrics.GetGlyphMetrics(unicode) : metrics.GetGlyphIndexMetrics(glyphIndex);
}

double Char::GetFontWidthOf(char32_t character) const
{
    return atts->GetFontMetrics()->GetGlyphMetrics(character).advance * GetSize() * atts->Get(HorizontalScale);
}

double Char::GetWordSpace() const
{
    const double fontSpace = GetFontWidthOf(U' ');
    const double letter = GetSize() * atts->Get(LetterSpacing) * atts->Get(HorizontalScale);
    return letter >= fontSpace || letter >= width ? 1 : (width - letter) / (fontSpace - letter);
}

} // namespace Quillet
