#pragma once

#include <Quillet/TextLineObject.h>

#include <Story/Story.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Quillet {
class ColumnObject;
}

namespace Host {

/// Characters of a line in a row that look alike.
struct TextRun
{
    Quillet::TextLineObject::Chars::const_iterator first;
    Quillet::TextLineObject::Chars::const_iterator last;
    /// From the start of the line, in points.
    double start = 0;
};

std::vector<TextRun> SplitIntoRuns(const Quillet::TextLineObject& line);

/// The characters in UTF-8. A space is one, however the font reaches it; a glyph without a character is U+FFFD.
std::string GetRunText(Quillet::TextLineObject::Chars::const_iterator first,
                       Quillet::TextLineObject::Chars::const_iterator last);

/// The same of a whole line, in the order in which it is read: letters of a line stand from left to right.
std::string GetReadText(const Quillet::TextLineObject& line);

/// The look of a paragraph's drop cap, which has the look of the text beside it: `atts` are those of its letters, the
/// last of which is `letter`. What neither its style nor the file says is worked out: it reaches from the top of a
/// capital on the first line to the baseline of the last line beside it.
Kernel::Counted<Story::GlyphAtts> MakeDropCapAtts(const Story::ParagraphAtts& paragraph, const Story::GlyphAtts& atts,
                                                  char32_t letter);

/// A tab of a line that is in a column, in points of the column's space.
struct TabPlace
{
    Quillet::TextLineObject::Chars::const_iterator tab;
    /// The gap that it is.
    double start = 0;
    double end = 0;
    /// Where the text behind it ends: at the next tab, or with the line.
    double textEnd = 0;
    /// The stop that it goes to, of the line's paragraph; null for none.
    const Story::TabStop* stop = nullptr;

    bool HasLeader() const { return stop && stop->leader != Story::TabLeader::None; }
};

/// The tabs behind the marker of a list; `frame` is the box around the column's baselines.
std::vector<TabPlace> FindTabs(const Quillet::TextLineObject& line, const Kernel::RectT<double>& frame);

std::string MakeUtf8(std::u32string_view text);

/// Where an item of a list stands in it.
struct ListMarker
{
    /// Of a numbered list: by counting on from the item before it that is written alike.
    int number = 0;
    /// The item has its list's first number.
    bool isRestart = false;
};

/// What stands before the text of an item, without the tab behind it.
std::string GetMarkerText(const Story::ListAtt& list, const std::string& number);

/// With characters that any font has for the common bullets of symbol fonts, which stand in the private use area.
std::string ReplaceSymbols(const std::string& text);

/// The text of a column as a host gets it: what the column pushes, with its items counted and its paragraphs beside
/// their lines.
///
/// Paid for (`Quillet::Budget`); without money it has no paragraphs. The column outlives it.
class ColumnText
{
public:
    struct Paragraph
    {
        bool IsItem() const { return atts->GetList() && atts->GetList()->type != Story::ListType::None; }
        bool IsNumbered() const { return atts->GetList() && atts->GetList()->type == Story::ListType::Number; }
        bool HasDropCap() const { return atts->GetDropCap() && atts->GetDropCap()->isEnabled; }
        /// As written out: "3." for instance. Only for an item.
        std::string GetMarkerText() const;

        Kernel::Consolidated<Story::ParagraphAtts> atts;
        const std::vector<Story::Story::Run>* runs = nullptr;
        ListMarker marker;
        /// Its lines of the column.
        std::size_t firstLine = 0;
        std::size_t lastLine = 0;
    };

    explicit ColumnText(const Quillet::ColumnObject& column);

    const std::vector<Paragraph>& GetParagraphs() const { return paragraphs; }

private:
    void FindLines(const Quillet::ColumnObject& column);
    void CountItems();

    Kernel::Counted<Story::Story> story;
    std::vector<Paragraph> paragraphs;
};

} // namespace Host
