#pragma once

#include "TextOf.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <Quillet/ColumnObject.h>
#include <Quillet/GroupObject.h>

#include <Kernel/CharTraits.h>
#include <Story/Story.h>

#include <memory>
#include <string>
#include <vector>

namespace Quillet::Test {

/// A string shown on a page, in a font in which every character is 6 points wide at 10 points; y upward.
struct Shown
{
    double x;
    double y;
    std::string text;
    double size = 10;
};

inline std::string MakeContent(const std::vector<Shown>& strings)
{
    std::string content;
    for (const Shown& shown : strings) {
        content += "BT /F " + ToText(shown.size) + " Tf " + ToText(shown.x) + ' ' + ToText(shown.y) + " Td (" +
                   shown.text + ") Tj ET\n";
    }
    return content;
}

/// A page of 600 by 800 points, reduced.
class ReducedPage
{
public:
    explicit ReducedPage(const std::string& content, TextFidelity fidelity = TextFidelityEditable,
                         bool isGrouped = true)
        : document(MakePagePdf(
              content,
              {"/Font << /F << /Type /Font /Subtype /Type1 /BaseFont /Courier /Encoding /WinAnsiEncoding >> >>",
               "/MediaBox [0 0 600 800]"}))
    {
        document->SetTextFidelity(fidelity);
        document->SetIsGroupTextLines(isGrouped);
        root = document.Build();
        root->Reduce({0, 0, 600, 800});
        Collect(*root);
    }

    static std::string ToUtf8(const std::u32string& text)
    {
        std::string bytes;
        for (const char32_t character : text)
            Kernel::CharTraits::AppendCodePoint(bytes, character);
        return bytes;
    }

    Story::Story GetStory(std::size_t index) const
    {
        Story::Story story;
        columns.at(index)->AppendTo(story, true);
        return story;
    }

    /// "[...]" for each column, with "L", "C", "R" or "J" and the text for each paragraph; tabs are ">", forced breaks
    /// "/".
    std::string Print() const
    {
        std::string text;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            text += '[';
            const Story::Story story = GetStory(i);
            for (const Story::Story::Paragraph& paragraph : story.GetParagraphs()) {
                if (text.back() != '[') text += " | ";
                text += std::string("LCRJ").at(static_cast<std::size_t>(paragraph.atts->GetAlignment()));
                for (const char c : ' ' + ToUtf8(paragraph.GetText()))
                    text += c == '\t' ? '>' : c == '\n' ? '/' : c;
            }
            text += ']';
        }
        return text;
    }

    TestDocument document;
    Kernel::Counted<GroupObject> root;
    std::vector<Kernel::Counted<ColumnObject>> columns;

private:
    void Collect(const GroupObject& group)
    {
        for (const auto& child : group.children) {
            if (const GroupObject* inner = child->AsGroup()) Collect(*inner);
            if (auto column = Kernel::DynamicCast<ColumnObject>(child)) columns.push_back(std::move(column));
        }
    }
};

} // namespace Quillet::Test
