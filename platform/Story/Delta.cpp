#include <Story/Delta.h>

#include <Kernel/HashAccumulator.h>
#include <Renderer/ValueKey.h>

#include <algorithm>

namespace Story {

namespace {

using Renderer::KeyOf;

constexpr GlyphAtt::Double c_doubles[] = {GlyphAtt::Size,    GlyphAtt::LetterSpacing,   GlyphAtt::BaselineShift,
                                          GlyphAtt::Kerning, GlyphAtt::HorizontalScale, GlyphAtt::Shear};
constexpr GlyphAtt::Int c_ints[] = {GlyphAtt::Underline, GlyphAtt::Strikeout};
constexpr GlyphAtt::Object c_fills[] = {GlyphAtt::Fill, GlyphAtt::StrokeFill, GlyphAtt::HighlightFill,
                                        GlyphAtt::UnderlineFill, GlyphAtt::StrikeoutFill};

/// By their looks; null for either counts as none.
bool AreSameLooks(const GlyphAtts::Fill& a, const GlyphAtts::Fill& b)
{
    if (a == b) return true;
    return a && b ? a->IsEqual(*b) : (a ? a : b)->IsEmpty();
}

bool AreSameLooks(const GlyphAtts::LineStyle& a, const GlyphAtts::LineStyle& b)
{
    static const auto& none = *new GlyphAtts::LineStyle(Renderer::LineStyleDescriptor::CreateNone());
    return a == b || (a ? a : none)->IsEqual(*(b ? b : none));
}

} // namespace

bool Delta::IsEmpty() const
{
    return doubles.empty() && ints.empty() && fills.empty() && !lineStyle && !language && !font;
}

void Delta::ApplyTo(GlyphAtts& atts) const
{
    for (const auto& [attribute, value] : doubles)
        atts.Set(attribute, value);
    for (const auto& [attribute, value] : ints)
        atts.Set(attribute, value);
    for (const auto& [attribute, value] : fills)
        atts.Set(attribute, value);
    if (lineStyle) atts.Set(GlyphAtt::LineStyle, *lineStyle);
    if (language) atts.Set(GlyphAtt::Language, *language);
    if (font) atts.SetDesiredFont(*font);
}

std::size_t Delta::GetHash() const
{
    std::size_t hash = Kernel::GetHashSeed();
    for (const auto& [attribute, value] : doubles) {
        Kernel::AddToHash(hash, attribute);
        Kernel::AddToHash(hash, KeyOf(value));
    }
    for (const auto& [attribute, value] : ints) {
        Kernel::AddToHash(hash, attribute);
        Kernel::AddToHash(hash, value);
    }
    for (const auto& [attribute, value] : fills) {
        Kernel::AddToHash(hash, attribute);
        if (value && !value->IsEmpty()) Kernel::AddToHash(hash, value->GetHash());
    }
    if (lineStyle && *lineStyle) Kernel::AddToHash(hash, (*lineStyle)->GetHash());
    if (language) Kernel::AddToHash(hash, *language);
    if (font) Kernel::AddToHash(hash, *font);
    return hash;
}

bool operator==(const Delta& a, const Delta& b)
{
    const auto isSameNumber = [](const auto& x, const auto& y) {
        return x.first == y.first && KeyOf(x.second) == KeyOf(y.second);
    };
    const auto isSameFill = [](const auto& x, const auto& y) {
        return x.first == y.first && AreSameLooks(x.second, y.second);
    };
    return std::ranges::equal(a.doubles, b.doubles, isSameNumber) && a.ints == b.ints &&
           std::ranges::equal(a.fills, b.fills, isSameFill) && a.lineStyle.has_value() == b.lineStyle.has_value() &&
           (!a.lineStyle || AreSameLooks(*a.lineStyle, *b.lineStyle)) && a.language == b.language && a.font == b.font;
}

Kernel::Counted<Delta> MakeLocalGlyphFormatting(const Kernel::Consolidated<GlyphAtts>& atts,
                                                const Kernel::Consolidated<GlyphAtts>& base, bool withLanguage)
{
    auto delta = Kernel::MakeCounted<Delta>();
    if (atts == base) return delta;
    const GlyphAtts& wanted = *(atts ? atts : GlyphAtts::GetDefault());
    const GlyphAtts& given = *(base ? base : GlyphAtts::GetDefault());
    for (const GlyphAtt::Double attribute : c_doubles) {
        if (KeyOf(wanted.Get(attribute)) != KeyOf(given.Get(attribute)))
            delta->doubles[attribute] = wanted.Get(attribute);
    }
    for (const GlyphAtt::Int attribute : c_ints) {
        if (wanted.Get(attribute) != given.Get(attribute)) delta->ints[attribute] = wanted.Get(attribute);
    }
    for (const GlyphAtt::Object attribute : c_fills) {
        if (!AreSameLooks(wanted.GetFill(attribute), given.GetFill(attribute)))
            delta->fills[attribute] = wanted.GetFill(attribute);
    }
    if (!AreSameLooks(wanted.GetLineStyle(), given.GetLineStyle())) delta->lineStyle = wanted.GetLineStyle();
    if (withLanguage && wanted.Get(GlyphAtt::Language) != given.Get(GlyphAtt::Language))
        delta->language = wanted.Get(GlyphAtt::Language);
    if (!(wanted.GetDesiredFont() == given.GetDesiredFont())) delta->font = wanted.GetDesiredFont();
    return delta;
}

} // namespace Story
