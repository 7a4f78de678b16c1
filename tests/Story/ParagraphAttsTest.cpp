#include <Story/ParagraphAtts.h>

#include "GlyphChanges.h"

#include <gmock/gmock.h>

namespace {

using namespace Story;

template <typename Value>
std::function<void(ParagraphAtts&)> Setting(ParagraphAtt::Object attribute, const std::function<void(Value&)>& change)
{
    return [=](ParagraphAtts& atts) {
        auto value = Kernel::MakeCounted<Value>();
        change(*value);
        atts.Set(attribute, Kernel::Counted<const Value>(value));
    };
}

GlyphString MakeMarker(char32_t character)
{
    GlyphString marker;
    marker.AddChar32(character);
    marker.Add(ListNumberGlyph::EncodeLevel(0));
    return marker;
}

TEST(ParagraphAtts, EachValueTellsParagraphsApart)
{
    using Change = std::function<void(ParagraphAtts&)>;
    const auto tabs = [](const TabStop& stop) {
        return Setting<TabStops>(ParagraphAtt::Tabs, [=](TabStops& stops) { stops.Set(stop); });
    };
    const auto list = [](const std::function<void(ListAtt&)>& change) {
        return Setting<ListAtt>(ParagraphAtt::List, change);
    };
    const auto cap = [](const std::function<void(DropCapAtt&)>& change) {
        return Setting<DropCapAtt>(ParagraphAtt::DropCap, change);
    };
    TabStop dotted(5, Tab::Right, true);
    dotted.SetLeader(TabLeader::Dots);
    std::vector<Change> changes{
        [](ParagraphAtts& atts) { atts.Set(ParagraphAtt::Alignment, AlignX::Justified); },
        [](ParagraphAtts& atts) { atts.Set(ParagraphAtt::LeadingMode, LeadingMode::Exact); },
        tabs({5, Tab::Left, false}),
        tabs({6, Tab::Left, false}),
        tabs({5, Tab::Right, false}),
        tabs({5, Tab::Right, true}),
        tabs(dotted),
        list([](ListAtt& att) { att.type = ListType::Number; }),
        list([](ListAtt& att) { att.SetBulletString(MakeMarker(U'\u2022')); }),
        list([](ListAtt& att) { att.SetNumberString(MakeMarker(U'(')); }),
        list([](ListAtt& att) { att.SetNumberFormat(NumberFormat::LowerLetter); }),
        list([](ListAtt& att) { att.SetRestartNumberingType(RestartNumberingType::Both); }),
        list([](ListAtt& att) { att.SetStartNumberingAt(4); }),
        list([](ListAtt& att) { att.SetIsRestartNumbering(true); }),
        list([](ListAtt& att) { att.SetAlign(AlignX::Right); }),
        list([](ListAtt& att) { att.SetTabStopIndent(18); }),
        list([](ListAtt& att) { att.SetStyleName("style", nullptr); }),
        list([](ListAtt& att) { att.SetStyleName("style", MakeSizeDelta(8)); }),
        list([](ListAtt& att) { att.SetStyleName("style", MakeSizeDelta(9)); }),
        cap([](DropCapAtt&) {}),
        cap([](DropCapAtt& att) { att.SetIsEnabled(true); }),
        cap([](DropCapAtt& att) { att.SetHeightInLines(3); }),
        cap([](DropCapAtt& att) { att.SetDistanceToText(2.5); }),
        cap([](DropCapAtt& att) { att.SetStyleName("style", MakeSizeDelta(8)); }),
        cap([](DropCapAtt& att) { att.SetStyleName("style", MakeSizeDelta(9)); }),
    };
    for (const int number : {1, 2, 3, 4, 5, 7, 8, 9, 10})
        changes.emplace_back([=](ParagraphAtts& atts) { atts.Set(static_cast<ParagraphAtt::Double>(number), 7.5); });

    std::vector<Kernel::Consolidated<ParagraphAtts>> seen{ParagraphAtts::GetDefault()};
    for (const Change& change : changes) {
        const auto changed = ParagraphAtts::GetDefault()->Clone();
        change(*changed);
        const auto interned = Kernel::ConsolidateObjectClone(changed);
        change(*changed);
        EXPECT_EQ(Kernel::ConsolidateObjectSacrifice(changed), interned) << seen.size();
        EXPECT_THAT(seen, testing::Not(testing::Contains(interned))) << seen.size();
        seen.push_back(interned);
    }
}

TEST(ParagraphAtts, NullTakesAway)
{
    const auto atts = ParagraphAtts::GetDefault()->Clone();
    atts->Set(ParagraphAtt::List, Kernel::Counted<const ListAtt>(Kernel::MakeCounted<ListAtt>(ListType::Bullet)));
    atts->Set(ParagraphAtt::DropCap, Kernel::Counted<const DropCapAtt>(Kernel::MakeCounted<DropCapAtt>()));
    atts->Set(ParagraphAtt::Tabs, Kernel::Counted<const TabStops>());
    atts->Set(ParagraphAtt::List, Kernel::Counted<const ListAtt>());
    atts->Set(ParagraphAtt::DropCap, Kernel::Counted<const DropCapAtt>());
    EXPECT_EQ(Kernel::ConsolidateObjectSacrifice(atts), ParagraphAtts::GetDefault());
    EXPECT_EQ(atts->GetList()->type, ListType::None);
    EXPECT_TRUE(atts->GetTabStops()->IsEmpty());
    EXPECT_EQ(atts->GetAlignment(), AlignX::Left);
    EXPECT_EQ(atts->Get(ParagraphAtt::WordSpaceDesired), 1);
}

} // namespace
