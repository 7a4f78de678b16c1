#include <Story/GlyphAtts.h>

#include <Renderer/ColourGrayscale.h>
#include <Renderer/FillSolid.h>
#include <Renderer/ValueKey.h>

#include <functional>
#include <tuple>
#include <utility>

namespace Story {

namespace {

using Renderer::KeyOf;

std::size_t GetPlace(GlyphAtt::Double attribute)
{
    switch (attribute) {
    case GlyphAtt::Size:
        return 0;
    case GlyphAtt::LetterSpacing:
        return 1;
    case GlyphAtt::BaselineShift:
        return 2;
    case GlyphAtt::Kerning:
        return 3;
    case GlyphAtt::HorizontalScale:
        return 4;
    case GlyphAtt::Shear:
        break;
    }
    return 5;
}

std::size_t GetPlace(GlyphAtt::Object attribute)
{
    switch (attribute) {
    case GlyphAtt::StrokeFill:
        return 1;
    case GlyphAtt::HighlightFill:
        return 2;
    case GlyphAtt::UnderlineFill:
        return 3;
    case GlyphAtt::StrikeoutFill:
        return 4;
    case GlyphAtt::Fill:
    case GlyphAtt::LineStyle:
        break;
    }
    return 0;
}

GlyphAtts::Fill MakeBlack()
{
    const Kernel::Consolidated<Renderer::Fill> solid =
        Kernel::ConsolidateObjectPostAlloc(Renderer::FillSolid(Renderer::ColourGrayscale::Create(0.0, 1.0, 1.0, {})));
    return Kernel::MakeCounted<Renderer::FillDescriptor>(solid, Renderer::FillBlendMode::Normal);
}

} // namespace

GlyphAtts::GlyphAtts() : doubles{12, 0, 0, 0, 1, 0}, lineStyle(Renderer::LineStyleDescriptor::CreateNone())
{
    fills.fill(Renderer::FillDescriptor::CreateNone());
    fills[0] = MakeBlack();
    metrics = Renderer::FontMetrics::Make(Kernel::Font::GetDefault());
}

const Kernel::Consolidated<GlyphAtts>& GlyphAtts::GetDefault()
{
    static const auto& atts =
        *new Kernel::Consolidated<GlyphAtts>(Kernel::ConsolidateObjectSacrifice(Kernel::MakeCounted<GlyphAtts>()));
    return atts;
}

void GlyphAtts::Set(GlyphAtt::Double attribute, double value)
{
    doubles[GetPlace(attribute)] = value;
}

void GlyphAtts::Set(GlyphAtt::Int attribute, int value)
{
    ints[static_cast<std::size_t>(attribute)] = value;
}

void GlyphAtts::Set(GlyphAtt::Object attribute, Fill value)
{
    fills[GetPlace(attribute)] = value ? std::move(value) : Renderer::FillDescriptor::CreateNone();
}

void GlyphAtts::Set(GlyphAtt::Object, LineStyle value)
{
    lineStyle = value ? std::move(value) : Renderer::LineStyleDescriptor::CreateNone();
}

void GlyphAtts::Set(GlyphAtt::String, const std::string& value)
{
    language = value;
}

void GlyphAtts::SetDesiredFont(const Kernel::Font& font)
{
    metrics = Renderer::FontMetrics::Make(font);
}

double GlyphAtts::Get(GlyphAtt::Double attribute) const
{
    return doubles[GetPlace(attribute)];
}

int GlyphAtts::Get(GlyphAtt::Int attribute) const
{
    return ints[static_cast<std::size_t>(attribute)];
}

const std::string& GlyphAtts::Get(GlyphAtt::String) const
{
    return language;
}

const GlyphAtts::Fill& GlyphAtts::GetFill(GlyphAtt::Object attribute) const
{
    return fills[GetPlace(attribute)];
}

const Kernel::Font& GlyphAtts::GetDesiredFont() const
{
    return metrics->GetFont();
}

double GlyphAtts::GetAscent() const
{
    return metrics->GetAscent() * GetSize();
}

double GlyphAtts::GetDescent() const
{
    return metrics->GetDescent() * GetSize();
}

double GlyphAtts::GetLineGap() const
{
    return metrics->GetLineGap() * GetSize();
}

double GlyphAtts::GetTypographicAscent() const
{
    return metrics->GetTypographicAscent() * GetSize();
}

double GlyphAtts::GetTotalAdvanceY() const
{
    return -Get(GlyphAtt::BaselineShift);
}

Raster::AffineTransform::Params GlyphAtts::GetGlyphTransform(Kernel::PointT<double> pen) const
{
    const double size = GetSize();
    return {size * Get(GlyphAtt::HorizontalScale), size * Get(GlyphAtt::Shear), pen.x, 0, size, pen.y};
}

std::size_t GlyphAtts::GetHash() const
{
    const auto& [size, spacing, shift, kerning, scale, shear] = doubles;
    return Renderer::HashOf(std::tuple(KeyOf(size), KeyOf(spacing), KeyOf(shift), KeyOf(kerning), KeyOf(scale),
                                       KeyOf(shear), ints[0], ints[1], fills[0]->GetHash(), fills[1]->GetHash(),
                                       lineStyle->GetHash(), metrics.Get(), language));
}

bool GlyphAtts::IsEqual(const Consolidatable& base) const
{
    const auto& other = static_cast<const GlyphAtts&>(base);
    for (std::size_t i = 0; i < doubles.size(); ++i) {
        if (KeyOf(doubles[i]) != KeyOf(other.doubles[i])) return false;
    }
    for (std::size_t i = 0; i < fills.size(); ++i) {
        if (fills[i] != other.fills[i] && !fills[i]->IsEqual(*other.fills[i])) return false;
    }
    return ints == other.ints && metrics == other.metrics && language == other.language &&
           (lineStyle == other.lineStyle || lineStyle->IsEqual(*other.lineStyle));
}

} // namespace Story
