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
}

TEST(GlyphAtts, KeepsEachAttributeApart)
{
    const auto atts = GlyphAtts::GetDefault()->Clone();
    double value = 20;
    for (const GlyphAtt::Double attribute : c_doubles)
        atts->Set(attribute, value++);
    for (const GlyphAtt::Int attribute : c_ints)
        atts->Set(attribute, static_cast<int>(value++));
    std::vector<GlyphAtts::Fill> fills;
    for (const GlyphAtt::Object attribute : c_fills)
        atts->Set(attribute, fills.emplace_back(MakeGray(0.1 * static_cast<double>(fills.size()))));
    const auto line = MakeLine(3);
    atts->Set(GlyphAtt::LineStyle, line);
    atts->Set(GlyphAtt::Language, "en-GB");
    atts->SetDesiredFont(MakeFont("NimbusSans-Bold"));

    value = 20;
    for (const GlyphAtt::Double attribute : c_doubles)
        EXPECT_EQ(atts->Get(attribute), value++) << attribute;
    for (const GlyphAtt::Int attribute : c_ints)
        EXPECT_EQ(atts->Get(attribute), value++) << attribute;
    std::size_t place = 0;
    for (const GlyphAtt::Object attribute : c_fills)
        EXPECT_EQ(atts->GetFill(attribute), fills[place++]) << attribute;
    EXPECT_EQ(atts->GetLineStyle(), line);
    EXPECT_EQ(atts->Get(GlyphAtt::Language), "en-GB");
    EXPECT_EQ(atts->GetDesiredFont(), MakeFont("NimbusSans-Bold"));
    EXPECT_EQ(&atts->GetFontMetrics()->GetFont(), &atts->GetDesiredFont());

    atts->Set(GlyphAtt::Fill, GlyphAtts::Fill());
    EXPECT_EQ(atts->GetFill(GlyphAtt::Fill), FillDescriptor::CreateNone());
    atts->Set(GlyphAtt::LineStyle, GlyphAtts::LineStyle());
    EXPECT_EQ(atts->GetLineStyle(), LineStyleDescriptor::CreateNone());
    atts->Set(GlyphAtt::Kerning, -1.0);
    EXPECT_FALSE(atts->UsesAutoKerning());
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
