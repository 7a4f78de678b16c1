#pragma once

#include "text/Paragraph.h"

#include "MakeLines.h"

#include <Quillet/ColumnObject.h>

#include <Kernel/CharTraits.h>
#include <Story/TabStops.h>

#include <string>
#include <vector>

/// Lines of a fixed font, in which every character is 6 points wide at 10 points.
namespace Quillet::Test {

/// Appends text to a line; "[30]" is a space of 30 points.
inline void AppendText(TextLineObject& line, const std::u32string& text, const Atts& atts)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        Char c = MakeChar(text[i], 0.6 * atts->GetSize(), atts);
        if (c.unicode == U'[' && text.find(U']', i) != std::u32string::npos) {
            const std::size_t end = text.find(U']', i);
            c.width = std::stod(std::string(text.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                                            text.begin() + static_cast<std::ptrdiff_t>(end)));
            c.unicode = U' ';
            c.isSpace = true;
            i = end;
        }
        line.chars.push_back(c);
    }
    line.width = line.GetWidth(line.chars.begin(), line.chars.end());
    line.textHeight = line.GetTextHeight(line.chars.begin(), line.chars.end());
}

inline Line SetText(const std::u32string& text, double x = 0, double y = 0)
{
    auto line = Kernel::MakeCounted<TextLineObject>(-1);
    line->fidelity = TextFidelityEditable;
    line->position = {x, y};
    AppendText(*line, text, MakeAtts());
    return line;
}

/// Lines of one place, with "|" between them.
inline std::vector<Line> SetLines(const std::u32string& texts, double x = 0)
{
    std::vector<Line> lines;
    for (std::size_t start = 0, end = 0; end != texts.npos; start = end + 1) {
        end = texts.find(U'|', start);
        lines.push_back(SetText(texts.substr(start, end == texts.npos ? end : end - start), x));
    }
    return lines;
}

/// As `SetText` takes it, with "<30>" for a tab of 30 points.
inline std::string PrintText(const TextLineObject& line)
{
    std::string text;
    for (const Char& c : line.chars) {
        if (c.IsTab()) {
            text += '<' + ToText(c.width) + '>';
        } else if (c.isSpace && c.width != 6) {
            text += '[' + ToText(c.width) + ']';
        } else {
            Kernel::CharTraits::AppendCodePoint(text, c.unicode);
        }
    }
    return text;
}

inline std::string PrintLines(const std::vector<Line>& lines)
{
    std::string text;
    for (const Line& line : lines)
        text += (text.empty() ? "" : "|") + PrintText(*line);
    return text;
}

inline Kernel::Counted<Paragraph> MakeParagraph(const std::vector<Line>& lines)
{
    auto paragraph = Kernel::MakeCounted<Paragraph>(nullptr);
    paragraph->lines = lines;
    paragraph->atts = Story::ParagraphAtts::GetDefault()->Clone();
    for (const Line& line : lines)
        line->SetParagraphAtts(paragraph->atts);
    lines.front()->SetIsParagraphFront(true);
    lines.back()->SetIsParagraphBack(true);
    return paragraph;
}

} // namespace Quillet::Test
