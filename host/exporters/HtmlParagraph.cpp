#include "exporters/HtmlParagraph.h"

#include "exporters/Costs.h"
#include "exporters/SvgElement.h"

#include <Quillet/Budget.h>

#include <Kernel/CharTraits.h>
#include <Kernel/LogicalOrder.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <unordered_map>

namespace Host {

using namespace Quillet;
using Atts = Kernel::Consolidated<Story::GlyphAtts>;

namespace {

/// A tab with what is before it on its line.
struct Tab
{
    TabPlace place;
    /// Characters on the same line, or behind the tab before it.
    std::size_t before;
    /// Where these begin, in the column's space.
    double left;
};

/// Whether a story gets a character: a space that only the font knows is one there.
bool IsInStory(const Char& c)
{
    return c.unicode != 0 || c.isSpace || c.glyphIndex >= 1;
}

std::size_t CountCharacters(TextLineObject::Chars::const_iterator first, TextLineObject::Chars::const_iterator last)
{
    return static_cast<std::size_t>(std::count_if(first, last, IsInStory));
}

TextLineObject::Chars::const_iterator GetTextBegin(const TextLineObject& line)
{
    return line.chars.begin() + std::clamp<std::ptrdiff_t>(line.listStyleCharCount, 0, std::ssize(line.chars));
}

/// `frame` is around the baselines of the column.
std::vector<Tab> CollectTabs(const ColumnObject& column, const ColumnText::Paragraph& paragraph,
                             const Kernel::RectT<double>& frame)
{
    std::vector<Tab> tabs;
    for (std::size_t i = paragraph.firstLine; i < paragraph.lastLine; ++i) {
        const TextLineObject& line = *column.lines[i];
        auto first = GetTextBegin(line);
        double left = line.position.x + line.GetWidth(line.chars.begin(), first);
        for (const TabPlace& place : FindTabs(line, frame)) {
            tabs.push_back({place, CountCharacters(first, place.tab), left});
            first = place.tab + 1;
            left = place.end;
            // The text that stands against a stop from the right is a part of what the tab before it spans.
            if (place.stop && place.stop->type == Story::Tab::Right) left = place.textEnd;
        }
    }
    return tabs;
}

bool IsRight(const TabPlace& place)
{
    return place.stop && place.stop->type == Story::Tab::Right;
}

const char* GetAlignValue(Story::AlignX::Type align)
{
    switch (align) {
    case Story::AlignX::Centre:
        return "center";
    case Story::AlignX::Right:
        return "right";
    case Story::AlignX::Justified:
    case Story::AlignX::JustifiedCentre:
    case Story::AlignX::JustifiedRight:
    case Story::AlignX::JustifiedAll:
        return "justify";
    case Story::AlignX::Left:
    case Story::AlignX::Mixed:
        break;
    }
    return "left";
}

/// Of justified text; null for what is usual.
const char* GetLastAlignValue(Story::AlignX::Type align)
{
    switch (align) {
    case Story::AlignX::JustifiedCentre:
        return "center";
    case Story::AlignX::JustifiedRight:
        return "right";
    case Story::AlignX::JustifiedAll:
        return "justify";
    default:
        return nullptr;
    }
}

bool IsRightToLeft(const std::vector<Story::Story::Run>& runs)
{
    std::u32string text;
    for (const Story::Story::Run& run : runs)
        text += run.text;
    return Kernel::IsRightToLeft(text);
}

double GetFinite(double value)
{
    return std::isfinite(value) ? value : 0;
}

} // namespace

Atts FindUsualAtts(const std::vector<Story::Story::Run>& runs)
{
    std::unordered_map<const Story::GlyphAtts*, std::size_t> counts;
    const Story::Story::Run* best = nullptr;
    std::size_t most = 0;
    for (const Story::Story::Run& run : runs) {
        const std::size_t count = counts[run.atts.Get()] += run.text.size();
        if (count <= most) continue;
        most = count;
        best = &run;
    }
    return best ? best->atts : Story::GlyphAtts::GetDefault();
}

HtmlParagraph::HtmlParagraph(const ColumnObject& usedColumn, const Kernel::RectT<double>& textBox,
                             const ColumnText::Paragraph& usedParagraph,
                             const Raster::ICCManager::ICCProfileSet& usedProfiles, double usedScale)
    : column(usedColumn), frame(textBox), paragraph(usedParagraph), profiles(usedProfiles), scale(usedScale),
      base(FindUsualAtts(*usedParagraph.runs)), look(*base, usedProfiles, usedScale),
      leading(GetFinite(usedParagraph.atts->Get(Story::ParagraphAtt::Leading))),
      isRightToLeft(IsRightToLeft(*usedParagraph.runs))
{
    // A paragraph of one line has no leading that anyone could see.
    if (!(leading > 0)) leading = base->GetSize() * 1.2;
}

double HtmlParagraph::GetSpaceAbove() const
{
    return (leading + base->GetAscent() - base->GetDescent()) / 2;
}

double HtmlParagraph::GetMargin(double spaceAbove) const
{
    using namespace Story::ParagraphAtt;
    const double distance = GetFinite(paragraph.atts->Get(Leading)) + GetFinite(paragraph.atts->Get(SpaceBefore));
    return distance - spaceAbove - GetSpaceAbove();
}

HtmlStyle HtmlParagraph::MakeStyle(double margin) const
{
    HtmlStyle style = look.MakeBase();
    style.SetPoints("line-height", leading);
    if (std::abs(margin) > 5e-4) style.SetPoints("margin-top", margin);
    const auto align = paragraph.atts->GetAlignment();
    style.Set("text-align", GetAlignValue(align));
    if (GetLastAlignValue(align)) style.Set("text-align-last", GetLastAlignValue(align));
    if (isRightToLeft) style.Set("direction", "rtl");
    SetIndents(style);
    SetWordSpace(style);
    return style;
}

void HtmlParagraph::SetIndents(HtmlStyle& style) const
{
    using namespace Story::ParagraphAtt;
    const Story::ParagraphAtts& atts = *paragraph.atts;
    const double left = GetFinite(atts.Get(LeftIndent));
    const double right = GetFinite(atts.Get(RightIndent));
    const double first = GetFinite(atts.Get(FirstLineIndent));
    // A box has no negative padding: what would reach out of the frame begins at its edge.
    if (left > 5e-4) style.SetPoints("padding-left", Across(left));
    if (right > 5e-4) style.SetPoints("padding-right", Across(right));
    const auto align = atts.GetAlignment();
    // Centred and right-aligned lines have all one indent.
    const bool hasFirst = align != Story::AlignX::Centre && align != Story::AlignX::Right;
    if (hasFirst && std::abs(first - left) > 5e-4) style.SetPoints("text-indent", Across(first - std::max(left, 0.0)));
    if (!paragraph.IsItem()) return;

    const Story::ListAtt& list = *atts.GetList();
    style.SetPoints("--gap", Across(GetFinite(list.tabStopIndent) - first));
    const Story::Story::Run* const run = paragraph.runs->empty() ? nullptr : &paragraph.runs->front();
    const auto markerAtts = (run ? run->atts : base)->Clone();
    if (list.delta) list.delta->ApplyTo(*markerAtts);
    style.Append(HtmlLook(*markerAtts, profiles, scale).MakeMarker(look));
}

void HtmlParagraph::SetWordSpace(HtmlStyle& style) const
{
    const double spacing = GetWordSpacing();
    if (std::abs(spacing) >= 5e-4) style.Set("word-spacing", MakeNumber(spacing, 4) + "em");
}

/// In ems of most of the text. The letter spacing counts apart, in the ratio as in a browser.
double HtmlParagraph::GetWordSpacing() const
{
    const double ratio = paragraph.atts->Get(Story::ParagraphAtt::WordSpaceDesired);
    if (!std::isfinite(ratio) || ratio <= 0 || std::abs(ratio - 1) < 5e-3) return 0;
    const double space = base->GetFontMetrics()->GetGlyphMetrics(U' ').advance;
    const double letter = base->Get(Story::GlyphAtt::LetterSpacing);
    return letter > 0 && letter < space ? ratio * (space - letter) - space : (ratio - 1) * space;
}

std::string HtmlParagraph::MakeContent() const
{
    Pieces pieces = CollectPieces();
    const std::string cap = paragraph.HasDropCap() ? MakeDropCap(pieces) : std::string();
    const std::string lines = MakeLines(pieces);
    // An empty line has the height of one.
    return cap.empty() && lines.empty() ? "<br>" : cap + lines;
}

HtmlParagraph::Pieces HtmlParagraph::CollectPieces() const
{
    Pieces pieces;
    for (const Story::Story::Run& run : *paragraph.runs) {
        for (const char32_t character : run.text)
            pieces.push_back({character, run.atts.Get()});
    }
    if (!isRightToLeft) FindGaps(pieces);
    return pieces;
}

/// Gaps that are no tabs are blanks, but entries with a gap between them stand apart as on the page.
void HtmlParagraph::FindGaps(Pieces& pieces) const
{
    constexpr double c_wideGap = 3;
    const double spacing = GetWordSpacing();
    auto piece = pieces.begin();
    for (std::size_t i = paragraph.firstLine; i < paragraph.lastLine; ++i) {
        const TextLineObject& line = *column.lines[i];
        for (auto c = GetTextBegin(line); c != line.chars.end(); ++c) {
            if (!IsInStory(*c)) continue;
            if (piece == pieces.end()) return;
            const double ems = spacing + c->atts->Get(Story::GlyphAtt::LetterSpacing);
            const double blank =
                c->GetFontWidthOf(U' ') + ems * c->GetSize() * c->atts->Get(Story::GlyphAtt::HorizontalScale);
            if (c->isSpace && c->GetWordSpace() > c_wideGap * std::max(line.wordSpace, 1.0))
                piece->gap = std::max(c->width - blank, 0.0);
            ++piece;
        }
        // What stands for the line's end.
        if (piece != pieces.end() && (piece->character == '\n' || piece->character == ' ')) ++piece;
    }
}

/// Takes the letter away. Its box is as high as the lines beside it, and its baseline that of the last of them.
std::string HtmlParagraph::MakeDropCap(Pieces& pieces) const
{
    if (paragraph.firstLine >= column.lines.size()) return {};
    const Story::DropCapAtt& cap = *paragraph.atts->GetDropCap();
    const TextLineObject& line = *column.lines[paragraph.firstLine];
    const auto first = GetTextBegin(line);
    const std::size_t count = std::min(CountCharacters(first, std::max(first, line.GetDropCapEnd())), pieces.size());
    if (count == 0) return {};
    const auto atts = MakeDropCapAtts(*paragraph.atts, *pieces.front().atts, pieces[count - 1].character);
    atts->Set(Story::GlyphAtt::BaselineShift, 0.0);
    const int lineCount = std::clamp(cap.heightInLines, 1, 100);
    const double baseline = (lineCount - 1) * leading + GetSpaceAbove();

    HtmlStyle style = HtmlLook(*atts, profiles, scale).MakeDifference(look);
    // A little less, lest the line below moves aside too.
    style.SetPoints("height", lineCount * leading - std::min(1.0, leading / 4));
    style.SetPoints("line-height", std::max(0.0, 2 * baseline - atts->GetAscent() + atts->GetDescent()));
    style.SetPoints("margin-right", Across(GetFinite(cap.distanceToText)));
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        Kernel::CharTraits::AppendCodePoint(text, pieces[i].character);
    pieces.erase(pieces.begin(), pieces.begin() + static_cast<std::ptrdiff_t>(count));
    return "<span class=\"cap\"" + style.MakeAttribute() + ">" + MakeHtmlText(text) + "</span>";
}

std::string HtmlParagraph::MakeText(Pieces::const_iterator first, Pieces::const_iterator last) const
{
    std::string html;
    while (first != last) {
        if (!Budget::Spend(Costs::c_htmlRun)) break;
        const Story::GlyphAtts* const atts = first->atts;
        const double gap = first->gap;
        std::string text;
        do {
            Kernel::CharTraits::AppendCodePoint(text, first->character);
            ++first;
        } while (first != last && first->atts == atts && gap == 0 && first->gap == 0);
        const std::string characters = MakeHtmlText(text);
        HtmlStyle style =
            atts == base.Get() ? look.MakeDifference(look) : HtmlLook(*atts, profiles, scale).MakeDifference(look);
        if (gap > 0) style.SetPoints("padding-right", Across(gap));
        html += style.IsEmpty() ? characters : "<span" + style.MakeAttribute() + ">" + characters + "</span>";
    }
    return html;
}

/// CSS has no tab stops. What a tab spans is a cell of that width at least, which grows with its text; the text that
/// ends at a stop from the right is in the cell, at its right.
std::string HtmlParagraph::MakeLines(const Pieces& pieces) const
{
    // Cells stand from left to right.
    const std::vector<Tab> tabs = isRightToLeft ? std::vector<Tab>() : CollectTabs(column, paragraph, frame);
    auto tab = tabs.begin();
    std::string html;
    auto first = pieces.begin();
    bool isInCell = false;
    const auto addText = [&](Pieces::const_iterator last) {
        const std::string text = MakeText(first, last);
        html += isInCell ? "<span>" + text + "</span></span>" : text;
        isInCell = false;
        first = last;
    };
    for (auto piece = pieces.begin(); piece != pieces.end(); ++piece) {
        if (piece->character == '\n') {
            addText(piece);
            html += '\n';
            first = piece + 1;
        }
        if (piece->character != '\t' || tab == tabs.end()) continue;
        const TabPlace& place = tab->place;
        const bool isRight = IsRight(place);
        const auto before = static_cast<std::ptrdiff_t>(tab->before);
        addText(isInCell ? piece : piece - std::min(before, piece - first));
        HtmlStyle style;
        style.SetPoints("min-width", Across(GetFinite((isRight ? place.textEnd : place.end) - tab->left)));
        const bool isRow = isRight || place.HasLeader();
        html += isRow ? "<span class=\"cell row\"" : "<span class=\"cell\"";
        html += style.MakeAttribute() + ">" + (isRow ? "<span>" : "") + MakeText(first, piece) + "\t";
        if (isRow)
            html +=
                place.HasLeader() ? "</span><span class=\"fill dots\"></span>" : "</span><span class=\"fill\"></span>";
        if (!isRight) html += "</span>";
        isInCell = isRight;
        first = piece + 1;
        ++tab;
    }
    addText(pieces.end());
    return html;
}

} // namespace Host
