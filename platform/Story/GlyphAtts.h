#pragma once

#include <Geometry/AffineTransform.h>
#include <Kernel/Consolidated.h>
#include <Kernel/Font.h>
#include <Kernel/PointT.h>
#include <Renderer/FillDescriptor.h>
#include <Renderer/FontMetrics.h>
#include <Renderer/LineStyleDescriptor.h>
#include <Story/GlyphAtt.h>

#include <array>
#include <string>

namespace Story {

/// How glyphs look: font, size, spacing, paint. A value to be interned; to change one, clone it, set, and consolidate.
class QUILLET_API GlyphAtts : public Kernel::Consolidatable
{
public:
    using Fill = Kernel::Counted<Renderer::FillDescriptor>;
    using LineStyle = Kernel::Counted<Renderer::LineStyleDescriptor>;

    /// 12 points of no font in particular, black, unstroked.
    static const Kernel::Consolidated<GlyphAtts>& GetDefault();
    Kernel::Counted<GlyphAtts> Clone() const { return Kernel::MakeCounted<GlyphAtts>(*this); }

    GlyphAtts();

    void Set(GlyphAtt::Double attribute, double value);
    void Set(GlyphAtt::Int attribute, int value);
    /// `LineStyle` takes a line style, every other attribute a fill. Null counts as none.
    void Set(GlyphAtt::Object attribute, Fill value);
    void Set(GlyphAtt::Object attribute, LineStyle value);
    void Set(GlyphAtt::String attribute, const std::string& value);
    void SetDesiredFont(const Kernel::Font& font);

    double Get(GlyphAtt::Double attribute) const;
    int Get(GlyphAtt::Int attribute) const;
    const std::string& Get(GlyphAtt::String attribute) const;
    /// Never null.
    const Fill& GetFill(GlyphAtt::Object attribute) const;
    const LineStyle& GetLineStyle() const { return lineStyle; }

    double GetSize() const { return Get(GlyphAtt::Size); }
    const Kernel::Font& GetDesiredFont() const;
    /// Of the font that the machine uses for the desired one. Never null. Loads the font configuration.
    const Kernel::Counted<const Renderer::FontMetrics>& GetFontMetrics() const { return metrics; }
    bool UsesAutoKerning() const { return Get(GlyphAtt::Kerning) >= 0; }

    /// In points: how far glyphs reach above the baseline and below it, both positive, baseline shift aside.
    double GetAscent() const;
    double GetDescent() const;
    /// What the font adds between lines, above the ascent, in points.
    double GetLineGap() const;
    /// Of the line that a typesetter leaves for these glyphs: what stands above the baseline.
    double GetTypographicAscent() const;
    /// How far the glyphs stand above the line's baseline, in points: the baseline shift, upward.
    double GetTotalAdvanceY() const;

    /// From the glyph's ems to the line's space with the pen at `pen`, both with y downward. The baseline shift is the
    /// caller's.
    Raster::AffineTransform::Params GetGlyphTransform(Kernel::PointT<double> pen) const;

    std::size_t GetHash() const override;
    bool IsEqual(const Consolidatable& other) const override;

private:
    std::array<double, 6> doubles;
    std::array<int, 2> ints{};
    /// Fill, stroke, highlight, underline, strikeout.
    std::array<Fill, 5> fills;
    LineStyle lineStyle;
    std::string language;
    Kernel::Counted<const Renderer::FontMetrics> metrics;
};

} // namespace Story
