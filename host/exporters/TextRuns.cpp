#include "exporters/TextRuns.h"

#include "exporters/Costs.h"

#include <Quillet/Budget.h>
#include <Quillet/ColumnObject.h>

#include <Kernel/CharTraits.h>
#include <Kernel/LogicalOrder.h>
#include <Story/NumberFormat.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <limits>
#include <map>
#include <utility>

namespace Host {

using Chars = Quillet::TextLineObject::Chars;

std::vector<TextRun> SplitIntoRuns(const Quillet::TextLineObject& line)
{
    std::vector<TextRun> runs;
    double pen = 0;
    for (auto first = line.chars.begin(); first != line.chars.end();) {
        const auto last =
            std::find_if(first, line.chars.end(), [first](const auto& c) { return !(c.atts == first->atts); });
        runs.push_back({first, last, pen});
        pen += line.GetWidth(first, last);
        first = last;
    }
    return runs;
}

namespace {

char32_t GetCharacter(const Quillet::Char& c)
{
    if (c.unicode != 0) return c.unicode;
    return c.isSpace ? U' ' : Kernel::CharTraits::c_replacement;
}

} // namespace

std::string GetRunText(Chars::const_iterator first, Chars::const_iterator last)
{
    std::string text;
    for (; first != last; ++first)
        Kernel::CharTraits::AppendCodePoint(text, GetCharacter(*first));
    return text;
}

std::string GetReadText(const Quillet::TextLineObject& line)
{
    std::u32string text;
    text.reserve(line.chars.size());
    for (const Quillet::Char& c : line.chars)
        text += GetCharacter(c);
    std::string read;
    for (const Kernel::ReadCharacter& character : Kernel::GetLogicalOrder(text))
        Kernel::CharTraits::AppendCodePoint(read, character.GetFrom(text));
    return read.empty() ? MakeUtf8(text) : read;
}

namespace {

/// The stop that fits a tab best, if one does.
const Story::TabStop* FindStop(const Story::TabStops& stops, const TabPlace& place, const Kernel::RectT<double>& frame)
{
    const Story::TabStop* best = nullptr;
    double least = place.tab->GetSize();
    for (const Story::TabStop& stop : stops) {
        if (!Quillet::Budget::Spend(Costs::c_tabStop)) break;
        const double x = stop.fromRight ? frame.right - stop.position : frame.left + stop.position;
        double stands = place.end;
        if (stop.type == Story::Tab::Right) stands = place.textEnd;
        if (stop.type == Story::Tab::Centre) stands = (place.end + place.textEnd) / 2;
        // Where a decimal point is, nobody has asked yet: somewhere in the text.
        if (stop.type == Story::Tab::Decimal) stands = std::clamp(x, place.end, std::max(place.end, place.textEnd));
        const double distance = std::abs(x - stands);
        if (!(distance < least)) continue;
        least = distance;
        best = &stop;
    }
    return best;
}

} // namespace

Kernel::Counted<Story::GlyphAtts> MakeDropCapAtts(const Story::ParagraphAtts& paragraph, const Story::GlyphAtts& atts,
                                                  char32_t letter)
{
    using namespace Story::GlyphAtt;
    const Story::DropCapAtt& cap = *paragraph.GetDropCap();
    auto result = atts.Clone();
    if (cap.delta) cap.delta->ApplyTo(*result);
    const double depth = std::clamp(cap.heightInLines - 1, 0, 100) * paragraph.Get(Story::ParagraphAtt::Leading);
    if (!std::isfinite(depth)) return result;
    const auto isGiven = [&cap](Story::GlyphAtt::Double attribute) {
        return cap.delta && cap.delta->doubles.contains(attribute);
    };
    const auto box = result->GetFontMetrics()->GetGlyphMetrics(letter).box;
    // Most capitals are so high.
    const double height = box.IsEmpty() || !(box.top < -0.3) ? 0.7 : -box.top;
    if (!isGiven(Size)) result->Set(Size, atts.GetSize() + depth / height);
    if (!isGiven(BaselineShift)) result->Set(BaselineShift, depth);
    return result;
}

std::vector<TabPlace> FindTabs(const Quillet::TextLineObject& line, const Kernel::RectT<double>& frame)
{
    std::vector<TabPlace> tabs;
    double pen = line.position.x;
    double inkEnd = pen;
    const auto endText = [&] {
        if (!tabs.empty()) tabs.back().textEnd = std::max(tabs.back().end, inkEnd);
    };
    const auto text =
        line.chars.begin() + std::clamp<std::ptrdiff_t>(line.listStyleCharCount, 0, std::ssize(line.chars));
    for (auto c = line.chars.begin(); c != line.chars.end(); ++c) {
        const double start = std::exchange(pen, pen + c->width);
        if (c->IsTab() && c >= text) {
            endText();
            tabs.push_back({c, start, pen, pen, nullptr});
        }
        if (!c->isSpace) inkEnd = pen;
    }
    endText();
    if (line.paragraphAtts) {
        for (TabPlace& place : tabs)
            place.stop = FindStop(*line.paragraphAtts->GetTabStops(), place, frame);
    }
    return tabs;
}

std::string MakeUtf8(std::u32string_view text)
{
    std::string bytes;
    for (const char32_t character : text)
        Kernel::CharTraits::AppendCodePoint(bytes, character);
    return bytes;
}

std::string GetMarkerText(const Story::ListAtt& list, const std::string& number)
{
    std::string text = list.text.GetText(number);
    if (!text.empty() && text.back() == '\t') text.pop_back();
    return text;
}

std::string ReplaceSymbols(const std::string& text)
{
    static constexpr std::pair<char32_t, char32_t> c_symbols[] = {
        {0xF0B7, 0x2022}, {0xF0A7, 0x25AA}, {0xF0A8, 0x25FB}, {0xF06E, 0x25A0}, {0xF071, 0x2751},
        {0xF0D8, 0x27A2}, {0xF0E0, 0x2192}, {0xF0FC, 0x2713}, {0xF076, 0x2756}, {0xF06C, 0x25CF},
    };
    std::string result;
    for (std::size_t end = 0; end < text.size();) {
        char32_t character = Kernel::CharTraits::DecodeCodePoint(text, end);
        const auto* const found = std::ranges::find(c_symbols, character, &std::pair<char32_t, char32_t>::first);
        if (found != std::end(c_symbols)) character = found->second;
        Kernel::CharTraits::AppendCodePoint(result, character);
    }
    return result;
}

std::string ColumnText::Paragraph::GetMarkerText() const
{
    const Story::ListAtt& list = *atts->GetList();
    return Host::GetMarkerText(list, Story::ToText(list.format, marker.number));
}

ColumnText::ColumnText(const Quillet::ColumnObject& column) : story(Kernel::MakeCounted<Story::Story>())
{
    for (const auto& line : column.lines) {
        if (!Quillet::Budget::Spend(Costs::c_storyLine + Costs::c_storyChar * line->chars.size())) return;
    }
    // Where there is no frame to wrap in, lines end where the page ends them.
    column.AppendTo(*story, !column.IsArtText());
    paragraphs.reserve(story->GetParagraphs().size());
    for (const Story::Story::Paragraph& source : story->GetParagraphs()) {
        Paragraph& paragraph = paragraphs.emplace_back();
        paragraph.atts = source.atts;
        paragraph.runs = &source.runs;
    }
    FindLines(column);
    CountItems();
}

void ColumnText::FindLines(const Quillet::ColumnObject& column)
{
    const std::size_t lineCount = column.lines.size();
    std::size_t line = 0;
    for (Paragraph& paragraph : paragraphs) {
        paragraph.firstLine = line;
        if (line < lineCount) ++line;
        while (line < lineCount && !column.lines[line]->isParagraphFront)
            ++line;
        paragraph.lastLine = line;
    }
}

void ColumnText::CountItems()
{
    // Lists that are written alike are one list, whatever stands between its items.
    std::map<std::pair<std::string, Story::NumberFormat>, int> numbers;
    bool isBehindItem = false;
    for (Paragraph& paragraph : paragraphs) {
        const bool isNumbered = paragraph.IsNumbered();
        if (isNumbered) {
            const Story::ListAtt& list = *paragraph.atts->GetList();
            const bool restartsAlone = (static_cast<int>(list.restartType) &
                                        static_cast<int>(Story::RestartNumberingType::AfterOtherText)) != 0;
            const auto [known, isNew] = numbers.try_emplace({Host::GetMarkerText(list, "%1"), list.format}, list.start);
            const bool isRestart = isNew || list.isRestart || (restartsAlone && !isBehindItem);
            if (isRestart)
                known->second = list.start;
            else if (known->second < std::numeric_limits<int>::max())
                ++known->second;
            paragraph.marker = {known->second, isRestart};
        }
        isBehindItem = isNumbered;
    }
}

} // namespace Host
