#include <Story/Story.h>

#include "GlyphChanges.h"

#include <gtest/gtest.h>

namespace {

using namespace Story;

Kernel::Consolidated<GlyphAtts> MakeSize(double size)
{
    return MakeGlyphAtts([size](GlyphAtts& atts) { atts.Set(GlyphAtt::Size, size); });
}

Kernel::Consolidated<ParagraphAtts> MakeIndent(double indent)
{
    const auto atts = ParagraphAtts::GetDefault()->Clone();
    atts->Set(ParagraphAtt::LeftIndent, indent);
    return Kernel::ConsolidateObjectSacrifice(atts);
}

TEST(Story, KeepsParagraphsAndRuns)
{
    ::Story::Story story;
    story.Flush();
    EXPECT_TRUE(story.GetParagraphs().empty());
    // Without attributes: text has the default ones.
    story.Add(U'a');
    story.SetParagraphAtts(MakeIndent(5));
    story.SetGlyphAtts(MakeSize(20));
    story.SetGlyphAtts(MakeSize(10));
    story.AddGlyphIndex(70, U'b');
    story.AddGlyphIndex(71, 0);
    story.SetGlyphAtts(MakeSize(10));
    story.Add(GlyphFactory::Instance().GetHardBreak(HardBreak::Line));
    story.SetGlyphAtts(MakeSize(30));
    story.Add(Kernel::Counted<const Glyph>());
    story.Add(U'c');
    story.Add(0x2029);
    story.Add(0x2029);
    story.Add(U'd');
    story.Flush();
    story.Add(U'e');
    story.SetParagraphAtts(nullptr);

    const auto& paragraphs = story.GetParagraphs();
    ASSERT_EQ(paragraphs.size(), 6U);
    EXPECT_EQ(paragraphs[0].GetText(), U"a");
    EXPECT_EQ(paragraphs[0].atts, ParagraphAtts::GetDefault());
    EXPECT_EQ(paragraphs[0].runs[0].atts, GlyphAtts::GetDefault());
    // A glyph that nobody knows a character for still stands there.
    EXPECT_EQ(paragraphs[1].GetText(), U"b\uFFFD\nc");
    ASSERT_EQ(paragraphs[1].runs.size(), 2U);
    EXPECT_EQ(paragraphs[1].runs[0].text, U"b\uFFFD\n");
    EXPECT_EQ(paragraphs[1].runs[0].atts, MakeSize(10));
    EXPECT_EQ(paragraphs[1].runs[1].atts, MakeSize(30));
    EXPECT_TRUE(paragraphs[2].runs.empty());
    EXPECT_EQ(paragraphs[3].GetText(), U"d");
    EXPECT_EQ(paragraphs[4].GetText(), U"e");
    for (const int place : {1, 2, 3, 4})
        EXPECT_EQ(paragraphs[static_cast<std::size_t>(place)].atts, MakeIndent(5)) << place;
    EXPECT_EQ(paragraphs[5].atts, ParagraphAtts::GetDefault());
}

TEST(GlyphString, HasNumbersWhereTheyStand)
{
    const auto make = [](int level) {
        GlyphString string;
        string.AddChar32(U'(');
        string.Add(nullptr);
        string.Add(ListNumberGlyph::EncodeLevel(level));
        string.AddChar32(U'\u2022');
        string.AddChar32(0xD800);
        string.Add(GlyphFactory::Instance().GetHardBreak(HardBreak::Page));
        return string;
    };
    EXPECT_EQ(make(0).GetText("12"), "(12\u2022\uFFFD");
    EXPECT_EQ(make(1).GetText("12"), "(\u2022\uFFFD");
    EXPECT_EQ(make(0).GetItems().size(), 5U);
    EXPECT_TRUE(make(0) == make(0));
    EXPECT_EQ(make(0).GetHash(), make(0).GetHash());
    EXPECT_FALSE(make(0) == make(1));
    GlyphString shorter;
    shorter.AddChar32(U'(');
    EXPECT_FALSE(make(0) == shorter);
    EXPECT_EQ(ListNumberGlyph(0).GetCharacter(), 0xFFFCU);
    EXPECT_EQ(HardBreakGlyph(HardBreak::Line).GetCharacter(), U'\n');
}

} // namespace
