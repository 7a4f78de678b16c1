#include <Story/StyleSheet.h>

#include <Renderer/ColourGrayscale.h>
#include <Renderer/FillSolid.h>

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <vector>

namespace {

using namespace Story;
using Change = std::function<void(GlyphAtts&)>;

GlyphAtts::Fill MakeGray(double level)
{
    return Kernel::MakeCounted<Renderer::FillDescriptor>(
        Kernel::ConsolidateObjectPostAlloc(Renderer::FillSolid(Renderer::ColourGrayscale::Create(level, 1, 1, ""))),
        Renderer::FillBlendMode::Normal);
}

Kernel::Consolidated<GlyphAtts> Make(const Change& change)
{
    const auto atts = GlyphAtts::GetDefault()->Clone();
    change(*atts);
    return Kernel::ConsolidateObjectSacrifice(atts);
}

std::vector<Change> MakeChanges()
{
    std::vector<Change> changes;
    for (const int number : {0, 4, 5, 6, 10, 12}) {
        for (const double value : {7.5, std::numeric_limits<double>::quiet_NaN()})
            changes.emplace_back([=](GlyphAtts& atts) { atts.Set(static_cast<GlyphAtt::Double>(number), value); });
    }
    for (const int number : {0, 1})
        changes.emplace_back([=](GlyphAtts& atts) { atts.Set(static_cast<GlyphAtt::Int>(number), 1); });
    for (const int number : {0, 1, 4, 5, 6})
        changes.emplace_back([=](GlyphAtts& atts) { atts.Set(static_cast<GlyphAtt::Object>(number), MakeGray(0.5)); });
    changes.emplace_back([](GlyphAtts& atts) { atts.Set(GlyphAtt::Fill, GlyphAtts::Fill()); });
    changes.emplace_back([](GlyphAtts& atts) {
        Renderer::LineStyle style;
        style.width = 3;
        atts.Set(GlyphAtt::LineStyle,
                 Kernel::MakeCounted<Renderer::LineStyleDescriptor>(Kernel::ConsolidateObjectPostAlloc(style)));
    });
    changes.emplace_back([](GlyphAtts& atts) { atts.Set(GlyphAtt::Language, "fr"); });
    changes.emplace_back([](GlyphAtts& atts) {
        Kernel::Font font;
        font.SetPostscriptName("NimbusSans-Bold");
        atts.SetDesiredFont(font);
    });
    return changes;
}

TEST(Delta, HoldsWhatDiffersAndGivesItBack)
{
    const auto& plain = GlyphAtts::GetDefault();
    EXPECT_TRUE(MakeLocalGlyphFormatting(plain, plain, true)->IsEmpty());
    EXPECT_TRUE(MakeLocalGlyphFormatting(nullptr, plain, true)->IsEmpty());
    std::vector<Kernel::Counted<Delta>> seen{Kernel::MakeCounted<Delta>()};
    for (const Change& change : MakeChanges()) {
        const auto changed = Make(change);
        for (const auto& [from, to] : {std::pair(plain, changed), std::pair(changed, plain)}) {
            const auto delta = MakeLocalGlyphFormatting(to, from, true);
            EXPECT_FALSE(delta->IsEmpty()) << seen.size();
            const auto applied = from->Clone();
            delta->ApplyTo(*applied);
            EXPECT_EQ(Kernel::ConsolidateObjectSacrifice(applied), to) << seen.size();
        }
        const auto delta = MakeLocalGlyphFormatting(changed, plain, true);
        const auto again = MakeLocalGlyphFormatting(changed, plain, true);
        EXPECT_TRUE(*delta == *again) << seen.size();
        EXPECT_EQ(delta->GetHash(), again->GetHash()) << seen.size();
        for (const auto& other : seen)
            EXPECT_FALSE(*delta == *other) << seen.size();
        seen.push_back(delta);
    }

    const auto spaced = Make([](GlyphAtts& atts) {
        atts.Set(GlyphAtt::LetterSpacing, 0.1);
        atts.Set(GlyphAtt::Language, "fr");
    });
    const auto delta = MakeLocalGlyphFormatting(spaced, plain, false);
    EXPECT_FALSE(delta->language);
    MutableDeltaVisitor(*delta).Visit(GlyphAtt::LetterSpacing);
    EXPECT_TRUE(delta->IsEmpty());
}

TEST(StyleSheet, FindsTheFirstOfALook)
{
    const auto makeDelta = [](double size) {
        auto delta = Kernel::MakeCounted<Delta>();
        delta->doubles[GlyphAtt::Size] = size;
        return Kernel::Counted<const Delta>(delta);
    };
    const auto makeStyle = [](const char* name, const Kernel::Counted<const Delta>& delta) {
        auto style = Kernel::MakeCounted<Style>(name);
        style->SetDelta(delta);
        return Kernel::ConsolidateObjectSacrifice(style);
    };
    StyleSheet sheet;
    sheet.Add(nullptr, true);
    sheet.Add(makeStyle("plain", nullptr), false);
    sheet.Add(makeStyle("a", makeDelta(1)), false);
    sheet.Add(makeStyle("b", makeDelta(1)), false);
    sheet.Add(makeStyle("a", makeDelta(2)), false);
    ASSERT_EQ(sheet.GetStyles().size(), 4U);
    EXPECT_EQ(sheet.FindByDelta(*makeDelta(1)), sheet.GetStyles()[1]);
    EXPECT_EQ(sheet.FindByDelta(*makeDelta(2)), sheet.GetStyles()[3]);
    EXPECT_EQ(sheet.FindByDelta(*makeDelta(3)), nullptr);

    sheet.Add(makeStyle("a", makeDelta(3)), true);
    ASSERT_EQ(sheet.GetStyles().size(), 3U);
    EXPECT_EQ(sheet.FindByDelta(*makeDelta(1))->GetName(), "b");
    EXPECT_EQ(sheet.FindByDelta(*makeDelta(2)), nullptr);
    EXPECT_EQ(sheet.FindByDelta(*makeDelta(3)), sheet.GetStyles()[2]);
}

} // namespace
