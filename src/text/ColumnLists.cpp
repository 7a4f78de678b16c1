// Which paragraphs of a column are items of one list.

#include <Quillet/ColumnObject.h>

#include "text/Paragraph.h"

#include <Quillet/PdfDocument.h>

#include <Kernel/LocalisedString.h>

#include <cmath>

namespace Quillet {

namespace {

constexpr double c_samePlace = 0.1;
constexpr const char* c_styleContext = "Import Style Name";

bool IsRoman(Story::NumberFormat format)
{
    return format == Story::NumberFormat::UpperRoman || format == Story::NumberFormat::LowerRoman;
}

/// Items count on from each other; one that looks different in the middle belongs to a list of its own.
bool AreAdjacent(const ColumnObject::Paragraphs& items)
{
    for (std::size_t i = 1; i < items.size(); ++i) {
        if (items[i]->previous != items[i - 1].Get()) return false;
    }
    return true;
}

} // namespace

/// Nothing before `next` begins a list: it is done, or nothing. What a list passed over is asked again, but only by the
/// other kind of list, so that all lists together cost two walks.
ColumnObject::Paragraphs ColumnObject::GetCompatibleLists(const Paragraphs& paragraphs, std::size_t& next)
{
    const auto isOpen = [](const Paragraph& paragraph) {
        return !paragraph.GetListCandidate().IsNone() && !paragraph.IsListDone();
    };
    while (next < paragraphs.size() && !isOpen(*paragraphs[next]))
        ++next;
    Paragraphs list;
    for (std::size_t i = next; i < paragraphs.size(); ++i) {
        const auto& paragraph = paragraphs[i];
        if (!isOpen(*paragraph)) continue;
        if (!list.empty()) {
            if (paragraph->GetListCandidate().type != list.back()->GetListCandidate().type) continue;
            if (!paragraph->IsCompatibleList(*list.back())) break;
        }
        paragraph->SetIsListDone(true);
        list.push_back(paragraph);
    }
    return list;
}

void ColumnObject::SetListCandidates(Paragraphs& paragraphs)
{
    if (lines.empty() || lines.front()->fidelity == TextFidelityExact) return;
    // A large numeral beside its text is a drop cap, and no marker.
    for (const auto& paragraph : paragraphs) {
        if (paragraph->lines.front()->IsDropCap()) paragraph->lines.front()->SetNotList();
    }
    std::size_t next = 0;
    for (Paragraphs list = GetCompatibleLists(paragraphs, next); !list.empty();
         list = GetCompatibleLists(paragraphs, next)) {
        // A single number, or a single bullet, is text.
        if (list.size() == 1) {
            list.front()->lines.front()->SetNotList();
            continue;
        }
        for (const auto& item : list)
            item->lines.front()->SetListStyleCharCount(item->GetListCandidate().charCount);
    }
    for (const auto& paragraph : paragraphs)
        paragraph->SetIsListDone(false);
}

void ColumnObject::SetListStyles(Paragraphs& paragraphs)
{
    if (lines.empty() || lines.front()->fidelity == TextFidelityExact) return;
    const Kernel::NonCounted<PdfDocument> document = GetDocument();
    std::size_t next = 0;
    for (Paragraphs list = GetCompatibleLists(paragraphs, next); !list.empty();
         list = GetCompatibleLists(paragraphs, next)) {
        const ListAtt& first = list.front()->GetListCandidate();
        Story::NumberFormat format = first.format;
        // What follows tells whether "i." is one or nine.
        if (IsRoman(format) && list.size() > 1) format = list[1]->GetListCandidate().format;
        // Items of a list look alike, so that they share a style.
        std::string styleName;
        if (first.delta && document) {
            const char* const name =
                first.type == Story::ListType::Bullet ? "Bullet Character %1" : "Numbered Character %1";
            styleName = document->MakeStyleName(first.delta, Kernel::LocalisedString(name, c_styleContext));
        }
        const auto align = static_cast<Story::AlignX::Type>(GetListAlign(list));
        const bool isAdjacent = AreAdjacent(list);
        for (const auto& item : list)
            item->SetListStyle(align, format, item == list.front(), isAdjacent, styleName);
    }
}

int ColumnObject::GetListAlign(const Paragraphs& paragraphs)
{
    if (paragraphs.front()->GetListCandidate().type != Story::ListType::Number) return Story::AlignX::Left;
    const Paragraph::Range reference = paragraphs.front()->GetListPosition();
    const auto isSame = [](double a, double b) { return std::abs(a - b) <= c_samePlace; };
    bool isLeft = true;
    bool isCentre = true;
    bool isRight = true;
    for (const auto& item : paragraphs) {
        const Paragraph::Range place = item->GetListPosition();
        isLeft = isLeft && isSame(place.minimum, reference.minimum);
        isCentre = isCentre && isSame(place.GetCentre(), reference.GetCentre());
        isRight = isRight && isSame(place.maximum, reference.maximum);
    }
    if (isRight) return Story::AlignX::Right;
    if (isLeft) return Story::AlignX::Left;
    return isCentre ? Story::AlignX::Centre : Story::AlignX::Right;
}

} // namespace Quillet
