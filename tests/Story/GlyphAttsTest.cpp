#include <Story/GlyphAtts.h>

#include <Renderer/ColourGrayscale.h>
#include <Renderer/FillSolid.h>

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace {

using namespace Story;
using Renderer::FillDescriptor;
using Renderer::LineStyleDescriptor;

GlyphAtts::Fill MakeGray(double level)
{
    return Kernel::MakeCounted<FillDescriptor>(
        Kernel::ConsolidateObjectPostAlloc(Renderer::FillSolid(Renderer::ColourGrayscale::Create(level, 1, 1, ""))),
        Renderer::FillBlendMode::Normal);
}

GlyphAtts::LineStyle MakeLine(double width)
{
    Renderer::LineStyle style;
    style.width = width;
    return Kernel::MakeCounted<LineStyleDescriptor>(Kernel::ConsolidateObjectPostAlloc(style));
}

Kernel::Font MakeFont(const char* name)
{
    Kernel::Font font;
    font.SetPostscriptName(name);
    return font;
}

const GlyphAtt::Double c_doubles[] = {GlyphAtt::Size,    GlyphAtt::LetterSpacing,   GlyphAtt::BaselineShift,
                                      GlyphAtt::Kerning, GlyphAtt::HorizontalScale, GlyphAtt::Shear};
const GlyphAtt::Int c_ints[] = {GlyphAtt::Underline, GlyphAtt::Strikeout};
const GlyphAtt::Object c_fills[] = {GlyphAtt::Fill, GlyphAtt::StrokeFill, GlyphAtt::HighlightFill,
                                    GlyphAtt::UnderlineFill, GlyphAtt::StrikeoutFill};

Kernel::Consolidated<GlyphAtts> Intern(const Kernel::Counted<GlyphAtts>& atts)
{
    return Kernel::ConsolidateObjectSacrifice(atts);
}

TEST(GlyphAtts, DefaultIsPlainText)
{
    const auto& atts = GlyphAtts::GetDefault();
    EXPECT_EQ(atts->GetSize(), 12);
    EXPECT_EQ(atts->Get(GlyphAtt::HorizontalScale), 1);
    EXPECT_FALSE(atts->GetFill(GlyphAtt::Fill)->IsEmpty());
    EXPECT_TRUE(atts->GetFill(GlyphAtt::Fill)->IsEqual(*MakeGray(0)));
    for (const GlyphAtt::Object object : c_fills)
        EXPECT_EQ(atts->GetFill(object)->IsEmpty(), object != GlyphAtt::Fill) << object;
    EXPECT_EQ(atts->GetLineStyle(), LineStyleDescriptor::CreateNone());
    EXPECT_EQ(atts->GetDesiredFont(), Kernel::Font::GetDefault());
    EXPECT_TRUE(atts->UsesAutoKerning());
    EXPECT_EQ(Intern(atts->Clone()), atts);

    const auto bare = atts->Clone();
    bare->Set(GlyphAtt::Fill, GlyphAtts::Fill());
    EXPECT_EQ(bare->GetFill(GlyphAtt::Fill), FillDescriptor::CreateNone());
    bare->Set(GlyphAtt::LineStyle, GlyphAtts::LineStyle());
    EXPECT_EQ(bare->GetLineStyle(), LineStyleDescriptor::CreateNone());
    bare->Set(GlyphAtt::Kerning, -1.0);
    EXPECT_FALSE(bare->UsesAutoKerning());
    bare->SetDesiredFont(MakeFont("NimbusSans-Bold"));
    EXPECT_EQ(bare->GetFontMetrics()->GetFont(), MakeFont("NimbusSans-Bold"));
}

TEST(GlyphAtts, EachAttributeTellsValuesApart)
{
    std::vector<std::function<void(GlyphAtts&)>> changes;
    for (const GlyphAtt::Double attribute : c_doubles)
        changes.emplace_back([attribute](GlyphAtts& atts) { atts.Set(attribute, 7.5); });
    for (const GlyphAtt::Int attribute : c_ints)
        changes.emplace_back([attribute](GlyphAtts& atts) { atts.Set(attribute, 1); });
    for (const GlyphAtt::Object attribute : c_fills)
        changes.emplace_back([attribute](GlyphAtts& atts) { atts.Set(attribute, MakeGray(0.5)); });
    changes.emplace_back([](GlyphAtts& atts) { atts.Set(GlyphAtt::LineStyle, MakeLine(3)); });
    changes.emplace_back([](GlyphAtts& atts) { atts.Set(GlyphAtt::Language, "fr"); });
    changes.emplace_back([](GlyphAtts& atts) { atts.SetDesiredFont(MakeFont("NimbusSans-Bold")); });
    // The same font of the machine, but not what was asked for.
    changes.emplace_back([](GlyphAtts& atts) { atts.SetDesiredFont(MakeFont("Nofont")); });

    std::vector<Kernel::Consolidated<GlyphAtts>> seen{GlyphAtts::GetDefault()};
    for (const auto& change : changes) {
        const auto once = GlyphAtts::GetDefault()->Clone();
        const auto again = GlyphAtts::GetDefault()->Clone();
        change(*once);
        change(*again);
        EXPECT_EQ(once->GetHash(), again->GetHash()) << seen.size();
        const auto interned = Intern(once);
        EXPECT_EQ(Intern(again), interned) << seen.size();
        for (const auto& other : seen)
            EXPECT_FALSE(interned == other) << seen.size();
        seen.push_back(interned);
    }
}

TEST(GlyphAtts, MeasuresInPoints)
{
    const auto atts = GlyphAtts::GetDefault()->Clone();
    atts->SetDesiredFont(MakeFont("DejaVuSans"));
    atts->Set(GlyphAtt::Size, 20.48);
    atts->Set(GlyphAtt::BaselineShift, 3.0);
    EXPECT_NEAR(atts->GetAscent(), 19.01, 1e-9);
    EXPECT_NEAR(atts->GetDescent(), 4.83, 1e-9);
    EXPECT_NEAR(atts->GetTypographicAscent(), 15.56, 1e-9);
    EXPECT_EQ(atts->GetTotalAdvanceY(), -3);
}

TEST(GlyphAtts, PlacesGlyphsAtThePen)
{
    const auto atts = GlyphAtts::GetDefault()->Clone();
    atts->Set(GlyphAtt::Size, 10.0);
    atts->Set(GlyphAtt::HorizontalScale, 0.5);
    atts->Set(GlyphAtt::Shear, -0.25);
    atts->Set(GlyphAtt::BaselineShift, 99.0);
    const auto transform = atts->GetGlyphTransform({100, 200});
    const std::pair<Kernel::PointT<double>, Kernel::PointT<double>> rows[] = {
        {{0, 0}, {100, 200}},
        {{1, 0}, {105, 200}},
        // The top of a glyph leans to the right.
        {{0, -1}, {102.5, 190}},
    };
    for (const auto& [from, to] : rows) {
        const auto point = transform.ApplyTo(from);
        EXPECT_DOUBLE_EQ(point.x, to.x);
        EXPECT_DOUBLE_EQ(point.y, to.y);
    }
}

} // namespace
