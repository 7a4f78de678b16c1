#pragma once

#include "text/FrequencyMap.h"
#include "text/ListAtt.h"

#include <Quillet/TextLineObject.h>

#include <Story/ParagraphAtts.h>

#include <string>
#include <vector>

namespace Quillet {

/// Lines of a column that follow each other as one paragraph, while the column is being finished: what a typesetter
/// would have set. What is worked out goes into the lines' `paragraphAtts`.
class QUILLET_API Paragraph : public Kernel::Countable
{
public:
    using Lines = std::vector<Kernel::Counted<TextLineObject>>;
    using Rect = Kernel::RectT<double>;

    /// What becomes of a line that comes next.
    enum class AddAction {
        Add,       ///< It belongs to the paragraph.
        KeepFirst, ///< The paragraph's first line stands alone; the next one begins anew.
        New,       ///< It begins the next paragraph.
    };

    /// The edges of lines: from the least to the greatest.
    struct Range
    {
        double minimum = 0;
        double maximum = 0;

        void Set(double value) { minimum = maximum = value; }
        void Add(double value);
        double GetCentre() const { return minimum + (maximum - minimum) * 0.5; }
        bool CanAlign(double tolerance) const { return maximum - minimum <= tolerance; }
        bool CanAlignWith(double value, double tolerance) const;
    };

    /// Where the lines of a whole column begin, have their centres and end.
    struct Edges
    {
        Edges(const Lines& lines);

        FrequencyMap left;
        FrequencyMap centre;
        FrequencyMap right;
    };

    /// Bits of `alignMask`.
    enum AlignMask : unsigned { AlignLeft = 1, AlignCentre = 2, AlignRight = 4, AlignJustified = 8, AlignAll = 15 };

    explicit Paragraph(Paragraph* newPrevious);
    /// Takes the lines of `source` from `first` on, with the attributes; those before them get attributes of their own.
    Paragraph(Paragraph& source, Lines::iterator first);

    TextFidelity GetTextFidelity() const;
    AddAction GetAddAction(const TextLineObject& line) const;
    AddAction GetLeadingAddAction(const TextLineObject& line) const;
    AddAction GetAlignAddAction(const TextLineObject& line) const;
    AddAction GetFormattingAddAction(const TextLineObject& line) const;
    AddAction GetListStyleAddAction(const TextLineObject& line) const;
    unsigned GetAlignMask(const TextLineObject& line) const;
    void Add(const Kernel::Counted<TextLineObject>& line);
    /// Keeps the first `count` lines.
    void RemoveFrom(std::size_t count);

    void SetAlign(const Edges& edges);
    Story::AlignX::Type CalcAlign(const Edges& edges) const;
    /// Takes the alignment of a neighbour, if these lines may have it.
    bool OnAdjacentAlign(const Paragraph& other);
    bool CanRightCenterAlign() const;
    Story::AlignX::Type GetAlignX() const { return atts->GetAlignment(); }

    /// Everything that needs the text box of the column, and the places of gaps in all of it.
    void OnComplete(const Rect& rect, const FrequencyMap& tabs);
    void SetLeading(const Rect& rect);
    void SetIndents(const Rect& rect);
    void SetLineBreaks(const Rect& rect);
    void ApplyWordSpace();
    /// Counts where gaps end.
    void GetTabStops(FrequencyMap& tabs) const;
    void AdjustTabStops(const Rect& rect, const FrequencyMap& tabs);
    /// Splits at the first forced break, if that is as good as a paragraph's end: what follows, or null.
    Kernel::Counted<Paragraph> TrySplit();
    void Simplify();

    void SetDropCap();

    /// Of the first line. Never null.
    const ListAtt& GetListCandidate() const;
    bool IsCompatibleList(const Paragraph& other) const;
    bool IsListDone() const;
    void SetIsListDone(bool isDone);
    /// From the start of the marker to its end, the space behind it left out.
    Range GetListPosition() const;
    /// `styleName` is the character style of the marker, if that looks different.
    void SetListStyle(Story::AlignX::Type align, Story::NumberFormat format, bool isFirst, bool isAdjacent,
                      const std::string& styleName);

    Lines lines;
    /// Null for the first. The column's vector keeps it alive.
    Paragraph* previous = nullptr;
    double leading = -1;
    Range left;
    Range centre;
    Range right;
    /// `right` before the last line was added.
    Range rightBeforeLast;
    /// 0 for none; while building, the lines that stand beside the drop cap.
    int dropCapLines = 0;
    unsigned alignMask = 0;
    Kernel::Counted<Story::ParagraphAtts> atts;
};

} // namespace Quillet
