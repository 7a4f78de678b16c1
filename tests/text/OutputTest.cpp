#include "SetText.h"

#include <Story/GlyphSink.h>

#include <gtest/gtest.h>

#include <cmath>

namespace Quillet::Test {
namespace {

/// What is pushed, a letter a call: "P" and "G" for attributes, the character itself, "#" before a glyph's number, "\"
/// for a break, "~" for the end of a paragraph and "." for the end of all.
class RecordingSink : public Story::GlyphSink
{
public:
    std::string text;
    std::vector<Kernel::Consolidated<Story::ParagraphAtts>> paragraphs;

    void SetParagraphAtts(const Kernel::Consolidated<Story::ParagraphAtts>& atts) override
    {
        paragraphs.push_back(atts);
        text += 'P';
    }
    void SetGlyphAtts(const Kernel::Consolidated<Story::GlyphAtts>&) override { text += 'G'; }
    void Add(char32_t character) override { AddCharacter(character == 0x2029 ? U'~' : character); }
    void AddGlyphIndex(int glyphIndex, char32_t character) override
    {
        text += '#' + std::to_string(glyphIndex);
        AddCharacter(character);
    }
    void Add(const Kernel::Counted<const Story::Glyph>& glyph) override
    {
        text += glyph->GetCharacter() == U'\n' ? '\\' : '?';
    }
    void Flush() override { text += '.'; }

private:
    void AddCharacter(char32_t character) { Kernel::CharTraits::AppendCodePoint(text, character); }
};

TEST(OutputTest, PushesLinesInOrder)
{
    const auto column = Kernel::MakeCounted<ColumnObject>(-1);
    column->lines = SetLines(U"1. ab|cd\t|ef|gh|ij");
    for (const Line& line : column->lines)
        line->SetParent(column.Get());
    auto& lines = column->lines;
    MakeParagraph({lines[0], lines[1], lines[2]});
    const auto centred = MakeParagraph({lines[3], lines[4]});
    centred->atts->Set(Story::ParagraphAtt::Alignment, Story::AlignX::Centre);
    lines[0]->SetListStyleCharCount(3);
    lines[0]->chars[4].atts = MakeAtts(12);
    lines[2]->chars[0].glyphIndex = 7;
    lines[2]->chars[1].glyphIndex = 0;
    lines[3]->SetNeedsLineBreak(true);

    RecordingSink wrapped;
    column->AppendTo(wrapped, true);
    EXPECT_EQ(wrapped.text, "PGaGb Gcd\tG#7ef~PGgh\\Gij.");
    ASSERT_EQ(wrapped.paragraphs.size(), 2);
    EXPECT_EQ(wrapped.paragraphs[0]->GetAlignment(), Story::AlignX::Left);
    EXPECT_EQ(wrapped.paragraphs[1]->GetAlignment(), Story::AlignX::Centre);
    RecordingSink broken;
    column->AppendTo(broken, false);
    EXPECT_EQ(broken.text, "PGaGb\\Gcd\t\\G#7ef~PGgh\\Gij.");

    // A gap that became the space of the font has a glyph and no character.
    RecordingSink blank;
    const Line gap = SetText(U"a b");
    gap->chars[1].unicode = 0;
    gap->chars[1].glyphIndex = 3;
    gap->AppendTo(blank, true);
    EXPECT_EQ(blank.text, "Ga#3 b ");

    // Outside a column there is no last line, and without paragraphs there are the attributes of none.
    RecordingSink alone;
    const Line line = SetText(U"a");
    line->SetIsParagraphFront(true);
    line->SetIsParagraphBack(true);
    line->AppendTo(alone, true);
    EXPECT_EQ(alone.text, "PGa~");
    EXPECT_TRUE(alone.paragraphs[0] == Story::ParagraphAtts::GetDefault());
    EXPECT_FALSE(line->IsColumnBack());
    EXPECT_TRUE(lines[4]->IsColumnBack());
    EXPECT_FALSE(lines[3]->IsColumnBack());
}

TEST(OutputTest, TellsArtFromTextInAFrame)
{
    using Params = Object::Params;
    const Line line = SetText(U"a");
    for (const Params& frame : {Params::FromPdf(-0.6, 0.8, -0.8, -0.6, 5, 6), Params::Scale(1 + 5e-7, 1)}) {
        line->transform = frame;
        EXPECT_FALSE(line->HasArtTransform()) << frame.a;
    }
    for (const Params& art : {Params::Scale(1.00001, 1), Params::FromPdf(1, 0, 0.2, 1, 0, 0), Params::Scale(1, -1),
                              Params::FromPdf(0, 1, -1, 0.2, 0, 0), Params::Scale(0, 0), Params::Scale(NAN, 1)}) {
        line->transform = art;
        EXPECT_TRUE(line->HasArtTransform()) << art.a << " " << art.c << " " << art.d;
    }
}

TEST(OutputTest, LeavesRoomForTheLargestText)
{
    const Line line = SetText(U"ab");
    EXPECT_EQ(line->GetSpaceAbove(), MakeAtts()->GetTypographicAscent());
    AppendText(*line, U"c", MakeAtts(20));
    AppendText(*line, U"d", MakeAtts());
    EXPECT_EQ(line->GetSpaceAbove(), MakeAtts(20)->GetTypographicAscent());
    EXPECT_EQ(line->GetMinSpaceBelow(), MakeAtts(20)->GetDescent());
    EXPECT_GT(line->GetMinSpaceBelow(), 0);
    EXPECT_EQ(SetText(U"")->GetSpaceAbove(), 0);
}

} // namespace
} // namespace Quillet::Test
