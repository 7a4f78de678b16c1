#include <Story/GlyphAtts.h>
#include <Story/StyleSheet.h>

#include "GlyphChanges.h"

#include <gmock/gmock.h>

#include <limits>

namespace {

using namespace Story;
using Renderer::FillDescriptor;
using Renderer::LineStyleDescriptor;
using testing::Contains;
using testing::Not;

TEST(GlyphAtts, DefaultIsPlainText)
{
    const auto& atts = GlyphAtts::GetDefault();
    EXPECT_EQ(atts->GetSize(), 12);
    EXPECT_EQ(atts->Get(GlyphAtt::HorizontalScale), 1);
    EXPECT_TRUE(atts->GetFill(GlyphAtt::Fill)->IsEqual(*MakeGray(0)));
    for (const auto object :
         {GlyphAtt::StrokeFill, GlyphAtt::HighlightFill, GlyphAtt::UnderlineFill, GlyphAtt::StrikeoutFill})
        EXPECT_TRUE(atts->GetFill(object)->IsEmpty()) << object;
    EXPECT_EQ(atts->GetLineStyle(), LineStyleDescriptor::CreateNone());
    EXPECT_EQ(atts->GetDesiredFont(), Kernel::Font::GetDefault());
    EXPECT_TRUE(atts->UsesAutoKerning());

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

std::vector<GlyphChange> MakeChanges()
{
    std::vector<GlyphChange> changes{
        [](GlyphAtts& atts) { atts.Set(GlyphAtt::Fill, GlyphAtts::Fill()); },
        [](GlyphAtts& atts) {
            Renderer::LineStyle style;
            style.width = 3;
            atts.Set(GlyphAtt::LineStyle,
                     Kernel::MakeCounted<LineStyleDescriptor>(Kernel::ConsolidateObjectPostAlloc(style)));
        },
        [](GlyphAtts& atts) { atts.Set(GlyphAtt::Language, "fr"); },
        [](GlyphAtts& atts) { atts.SetDesiredFont(MakeFont("NimbusSans-Bold")); },
        // The same font of the machine, but not what was asked for.
        [](GlyphAtts& atts) { atts.SetDesiredFont(MakeFont("Nofont")); },
    };
    for (const int number : {0, 4, 5, 6, 10, 12}) {
        for (const double value : {7.5, std::numeric_limits<double>::quiet_NaN()})
            changes.emplace_back([=](GlyphAtts& atts) { atts.Set(static_cast<GlyphAtt::Double>(number), value); });
    }
    for (const int number : {0, 1})
        changes.emplace_back([=](GlyphAtts& atts) { atts.Set(static_cast<GlyphAtt::Int>(number), 1); });
    for (const int number : {0, 1, 4, 5, 6})
        changes.emplace_back([=](GlyphAtts& atts) { atts.Set(static_cast<GlyphAtt::Object>(number), MakeGray(0.5)); });
    return changes;
}

TEST(GlyphAtts, DifferByEachAttributeAndItsDelta)
{
    const auto& plain = GlyphAtts::GetDefault();
    EXPECT_TRUE(MakeLocalGlyphFormatting(plain, plain, true)->IsEmpty());
    EXPECT_TRUE(MakeLocalGlyphFormatting(nullptr, plain, true)->IsEmpty());
    std::vector<Kernel::Consolidated<GlyphAtts>> seen{plain};
    std::vector<Kernel::Counted<Delta>> seenDeltas{Kernel::MakeCounted<Delta>()};
    for (const GlyphChange& change : MakeChanges()) {
        SCOPED_TRACE(seen.size());
        const auto changed = MakeGlyphAtts(change);
        EXPECT_EQ(MakeGlyphAtts(change), changed);
        EXPECT_THAT(seen, Not(Contains(changed)));
        seen.push_back(changed);
        for (const auto& [from, to] : {std::pair(plain, changed), std::pair(changed, plain)}) {
            const auto delta = MakeLocalGlyphFormatting(to, from, true);
            EXPECT_FALSE(delta->IsEmpty());
            const auto applied = from->Clone();
            delta->ApplyTo(*applied);
            EXPECT_EQ(Kernel::ConsolidateObjectSacrifice(applied), to);
        }
        const auto delta = MakeLocalGlyphFormatting(changed, plain, true);
        const auto again = MakeLocalGlyphFormatting(changed, plain, true);
        EXPECT_TRUE(*delta == *again);
        EXPECT_EQ(delta->GetHash(), again->GetHash());
        for (const auto& other : seenDeltas)
            EXPECT_FALSE(*delta == *other);
        seenDeltas.push_back(delta);
    }

    const auto spaced = MakeGlyphAtts([](GlyphAtts& atts) {
        atts.Set(GlyphAtt::LetterSpacing, 0.1);
        atts.Set(GlyphAtt::Language, "fr");
    });
    const auto delta = MakeLocalGlyphFormatting(spaced, plain, false);
    EXPECT_FALSE(delta->language);
    MutableDeltaVisitor(*delta).Visit(GlyphAtt::LetterSpacing);
    EXPECT_TRUE(delta->IsEmpty());
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

TEST(StyleSheet, FindsTheFirstOfALook)
{
    const auto makeStyle = [](const char* name, const Kernel::Counted<const Delta>& delta) {
        auto style = Kernel::MakeCounted<Style>(name);
        style->SetDelta(delta);
        return Kernel::ConsolidateObjectSacrifice(style);
    };
    StyleSheet sheet;
    sheet.Add(nullptr, true);
    sheet.Add(makeStyle("plain", nullptr), false);
    sheet.Add(makeStyle("a", MakeSizeDelta(1)), false);
    sheet.Add(makeStyle("b", MakeSizeDelta(1)), false);
    sheet.Add(makeStyle("a", MakeSizeDelta(2)), false);
    ASSERT_EQ(sheet.GetStyles().size(), 4U);
    EXPECT_EQ(sheet.FindByDelta(*MakeSizeDelta(1)), sheet.GetStyles()[1]);
    EXPECT_EQ(sheet.FindByDelta(*MakeSizeDelta(2)), sheet.GetStyles()[3]);
    EXPECT_EQ(sheet.FindByDelta(*MakeSizeDelta(3)), nullptr);

    sheet.Add(makeStyle("a", MakeSizeDelta(3)), true);
    ASSERT_EQ(sheet.GetStyles().size(), 3U);
    EXPECT_EQ(sheet.FindByDelta(*MakeSizeDelta(1))->GetName(), "b");
    EXPECT_EQ(sheet.FindByDelta(*MakeSizeDelta(2)), nullptr);
    EXPECT_EQ(sheet.FindByDelta(*MakeSizeDelta(3)), sheet.GetStyles()[2]);
}

} // namespace
