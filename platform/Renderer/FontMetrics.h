#pragma once

#include <Geometry/PolyCurveDbl.h>
#include <Kernel/Countable.h>
#include <Kernel/Counted.h>
#include <Kernel/Font.h>
#include <Kernel/RectT.h>

#include <memory>

namespace Renderer {

/// What a glyph takes up, in ems.
struct GlyphMetrics
{
    /// The glyph's number in its font; 0 for a character that the font lacks.
    int id = 0;
    double advance = 0;
    /// From the pen, y downward; empty for a glyph without an outline.
    Kernel::RectT<double> box = Kernel::RectT<double>::MakeEmpty();
};

/// A rule along a line of text, in ems.
struct TextRule
{
    /// From the baseline down to the upper edge; negative above the baseline.
    double top = 0;
    double thickness = 0;
};

/// By what a program places rules.
enum class RuleSource {
    Font,    ///< The font's own tables.
    Descent, ///< The descent alone, whatever the font says, as LibreOffice does for one.
};

/// The measures of a font of the machine, in ems. Boxes, outlines and rules have y downward from the baseline. Each is
/// worked out when first asked for and kept; any number of threads may ask.
///
/// A font that the machine lacks has the measures of the nearest that it has, and on a machine without fonts a width of
/// half an em for each character and no boxes.
class QUILLET_API FontMetrics : public Kernel::Countable
{
public:
    /// One object for each font; it stays until the process ends.
    static Kernel::Counted<const FontMetrics> Make(const Kernel::Font& font);
    ~FontMetrics() override;
    FontMetrics(const FontMetrics&) = delete;
    FontMetrics& operator=(const FontMetrics&) = delete;

    /// As asked for.
    const Kernel::Font& GetFont() const { return font; }
    /// Whose measures these are.
    const Kernel::Font& GetActualFont() const { return actualFont; }

    /// A character that the font lacks has the measures of the glyph for that, and a wide one the width of an em.
    GlyphMetrics GetGlyphMetrics(char32_t character) const;
    GlyphMetrics GetGlyphIndexMetrics(int id) const;
    /// Pair kerning of two glyphs, by the font's own tables.
    double GetAutoKerning(int left, int right) const;
    /// With y downward, from the pen; null for a glyph without an outline.
    Kernel::Counted<const Geometry::PolyCurveDbl> GetOutline(int id) const;

    /// Above the baseline, and below it as a positive number.
    double GetAscent() const { return ascent; }
    double GetDescent() const { return descent; }
    /// What the font itself adds between lines; 0 for none. LibreOffice for one counts it as ascent, and backgrounds of
    /// its text reach that much higher.
    double GetLineGap() const { return lineGap; }
    /// Above the baseline: of the line that the font's designer had in mind, which may be lower than the ascent that
    /// keeps every glyph from being cut.
    double GetTypographicAscent() const { return typographicAscent; }
    TextRule GetUnderline(RuleSource source) const;
    TextRule GetStrikeout(RuleSource source) const;
    /// From the baseline down to the upper edge of the rule, and its thickness, by the font's tables.
    double GetUnderlinePosition() const { return underline.top; }
    double GetUnderlineThickness() const { return underline.thickness; }
    /// From the baseline down to the upper edge of the rule, hence negative, and its thickness, by the font's tables.
    double GetStrikeoutPosition() const { return strikeout.top; }
    double GetStrikeoutThickness() const { return strikeout.thickness; }

    /// What fonts with the same face share.
    struct Face;

    explicit FontMetrics(const Kernel::Font& askedFont);

private:
    Kernel::Font font;
    Kernel::Font actualFont;
    std::shared_ptr<Face> face;
    double ascent = 0.75;
    double descent = 0.25;
    double lineGap = 0;
    double typographicAscent = 0.75;
    TextRule underline{0.075, 0.05};
    TextRule strikeout{-0.275, 0.05};
};

} // namespace Renderer
