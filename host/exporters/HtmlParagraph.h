#pragma once

#include "exporters/HtmlLook.h"
#include "exporters/TextRuns.h"

#include <Quillet/ColumnObject.h>

#include <string>
#include <vector>

namespace Host {

/// A paragraph of a column as HTML: the measures that a browser sets it by, and its text.
class HtmlParagraph
{
public:
    using Atts = Kernel::Consolidated<Story::GlyphAtts>;

    /// All outlive it. `textBox` is around the column's baselines. `scale` is how much wider the frame is shown than
    /// its lengths say.
    HtmlParagraph(const Quillet::ColumnObject& usedColumn, const Kernel::RectT<double>& textBox,
                  const ColumnText::Paragraph& usedParagraph, const Raster::ICCManager::ICCProfileSet& usedProfiles,
                  double usedScale);

    /// From the top of the first line's box down to its baseline, and from there down to the box's end, in points.
    double GetSpaceAbove() const;
    double GetSpaceBelow() const { return leading - GetSpaceAbove(); }
    /// From the last baseline of the paragraph above, whose box goes on below it for `spaceAbove`, to this one's.
    double GetMargin(double spaceAbove) const;

    /// Of the paragraph's element, with its space above.
    HtmlStyle MakeStyle(double margin) const;
    std::string MakeContent() const;

private:
    struct Piece
    {
        char32_t character;
        const Story::GlyphAtts* atts;
        /// By how much a blank is wider than one, in points, where that is much.
        double gap = 0;
    };
    using Pieces = std::vector<Piece>;

    Pieces CollectPieces() const;
    void FindGaps(Pieces& pieces) const;
    std::string MakeDropCap(Pieces& pieces) const;
    std::string MakeText(Pieces::const_iterator first, Pieces::const_iterator last) const;
    std::string MakeLines(const Pieces& pieces) const;
    void SetIndents(HtmlStyle& style) const;
    void SetWordSpace(HtmlStyle& style) const;
    double GetWordSpacing() const;
    double Across(double length) const { return length / scale; }

    const Quillet::ColumnObject& column;
    const Kernel::RectT<double>& frame;
    const ColumnText::Paragraph& paragraph;
    const Raster::ICCManager::ICCProfileSet& profiles;
    const double scale;
    /// What most of the text has.
    Atts base;
    HtmlLook look;
    double leading;
    bool isRightToLeft;
};

/// The attributes that most characters have.
Kernel::Consolidated<Story::GlyphAtts> FindUsualAtts(const std::vector<Story::Story::Run>& runs);

} // namespace Host
