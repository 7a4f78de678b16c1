#include "exporters/TxtExporter.h"

#include "exporters/Costs.h"
#include "exporters/Format.h"
#include "exporters/TextRuns.h"

#include <Quillet/Budget.h>
#include <Quillet/ColumnObject.h>
#include <Quillet/TreeWalk.h>

#include <Kernel/CharTraits.h>

#include <string>

namespace Host {

namespace {

using namespace Quillet;

class TextWriter : public TreePass<>
{
public:
    Step Visit(const Object& object, const std::monostate&) override
    {
        if (!Budget::Spend(Costs::c_text)) return Step::End;
        if (object.GetKind() == Object::Kind::Column) AddColumn(static_cast<const ColumnObject&>(object));
        if (object.GetKind() == Object::Kind::TextLine) AddLine(static_cast<const TextLineObject&>(object));
        return Step::On;
    }

    LongText text;

private:
    void AddColumn(const ColumnObject& column)
    {
        const ColumnText content(column);
        bool isFirst = hasFrame;
        for (const ColumnText::Paragraph& paragraph : content.GetParagraphs()) {
            if (!Budget::Spend(Costs::c_text)) return;
            if (isFirst) text.Append("\n");
            isFirst = false;
            hasFrame = true;
            if (paragraph.IsItem()) Append(ReplaceSymbols(paragraph.GetMarkerText()) + " ");
            for (const Story::Story::Run& run : *paragraph.runs) {
                if (!Budget::Spend(Costs::c_text)) break;
                Append(MakeUtf8(run.text));
            }
            text.Append("\n");
        }
    }

    /// Of a raw tree.
    void AddLine(const TextLineObject& line)
    {
        Append(GetReadText(line));
        text.Append("\n");
    }

    /// Control characters would move a terminal, or end a page; none is a part of the text but these.
    void Append(const std::string& characters)
    {
        std::string clean;
        clean.reserve(characters.size());
        for (std::size_t end = 0; end < characters.size();) {
            const std::size_t start = end;
            const char32_t code = Kernel::CharTraits::DecodeCodePoint(characters, end);
            const bool isControl = code < 0x20 || (code >= 0x7F && code < 0xA0);
            if (!isControl || code == '\t' || code == '\n') clean.append(characters, start, end - start);
        }
        text.Append(clean);
    }

    /// Something stands above.
    bool hasFrame = false;
};

} // namespace

LongText MakeTxt(const PageView& view)
{
    TextWriter writer;
    WalkTree(view.root, writer);
    if (Budget::IsSpent()) view.problems[Error::CutShort] = 1;
    return std::move(writer.text);
}

} // namespace Host
