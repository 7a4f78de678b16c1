#pragma once

#include <Quillet/Char.h>
#include <Quillet/Object.h>
#include <Quillet/TextFidelity.h>

#include <Geometry/PolyCurveDbl.h>
#include <Kernel/PointT.h>
#include <Renderer/FillBlendMode.h>
#include <Story/ParagraphAtts.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace Story {
class GlyphSink;
} // namespace Story

namespace Quillet {

class FrequencyMap;
class ListAtt;
class PathObject;
class TextState;

/// One baseline of text: characters in a row from a start position.
///
/// Line space has y upward and a baseline along x; the object's own space is the same with y downward, as for all
/// objects. Lengths are in points.
class QUILLET_API TextLineObject : public Object
{
public:
    using Chars = std::vector<Char>;
    using Atts = Kernel::Consolidated<Story::GlyphAtts>;
    using Point = Kernel::PointT<double>;

    explicit TextLineObject(int newId);
    /// The characters from `first` up to `last` of another line, where they stand, with its transform, mask and clip.
    TextLineObject(const TextLineObject& source, int newId, Chars::const_iterator first, Chars::const_iterator last);
    ~TextLineObject() override;

    bool HasText() const override { return true; }
    /// The transform, the mask and the clip stay: the line may be filled anew.
    void Clear() override;
    void UpdateBBox() override;

    double GetWidth(Chars::const_iterator first, Chars::const_iterator last) const;
    /// The largest size in the range; 0 for none.
    double GetTextHeight(Chars::const_iterator first, Chars::const_iterator last) const;
    void SetBlendMode(Renderer::FillBlendMode::BlendMode mode) { blendMode = mode; }
    /// Whether a space stands in a font that has none.
    bool HasUndefinedSpace() const;

    /// Whether text of these attributes at a point of line space goes on with this line.
    bool CanMoveTo(const Point& point, const Atts& atts) const;
    /// Moves the pen back by `amount`.
    void Kern(double amount);
    /// Turns what was shown into what was typed, once no more text comes.
    void OnEndOfLine();

    /// The start of the baseline in the object's own space.
    Point GetGdiPosition() const { return {position.x, -position.y}; }
    /// The baseline in the object's own space, a box without height.
    Rect GetGdiTextBox() const;
    /// A transform that only slants the line becomes the slant of its glyphs; the clip stays where it is on the page.
    void MoveShearToGlyphs();

    // Merging and decorations.

    /// Whether `other`, a line of the same column, is a part of the same baseline.
    bool CanMergeWith(const TextLineObject& other) const;
    /// Whether the ink of one character at a pen and of another at another meet in x.
    bool OverlapsX(double pen, const Char& c, double otherPen, const Char& other) const;
    /// Takes in copies of the characters of a line for which `CanMergeWith` holds.
    void Merge(const TextLineObject& other);
    /// The first space or tab, the first character aside, that is at least that wide; the end for none.
    Chars::const_iterator FindGap(double gapWidth) const;
    /// The line from `first` on, with an id of its own; this one loses what stands from `second` on.
    Kernel::Counted<TextLineObject> Split(Chars::const_iterator first, Chars::const_iterator second, int newId);
    /// Whether a path can be a highlight, an underline or a strikeout of any text.
    static bool CanBeDecoration(const PathObject& path);
    /// Makes of a path an attribute of the characters that it decorates, if it fits them; `isBehind` tells whether it
    /// is painted before the line. True if the path can go.
    bool TryDecoration(const PathObject& path, bool isBehind);

    // Spacing.

    /// The width that a range has by its fonts' own measures, in points.
    double GetStoryWidth(Chars::const_iterator first, Chars::const_iterator last, bool noAutoKern,
                         double wordSpaceRatio) const;
    double GetStoryWidth(Chars::const_iterator c) const;
    /// Of the line without the spaces at its end, and without pair kerning.
    double GetStoryWidth() const;
    double GetStoryAutoKern(Chars::const_iterator c) const;
    /// How much wider than in the file a character would be, in ems.
    double GetLetterSpace(Chars::const_iterator c) const;
    /// Finds the attributes under which the host sets the characters where the file has them; once a column is final.
    void OnLineComplete();
    void SetWordSpace(double ratio) { wordSpace = ratio; }
    void SetDoubleSpaceAfterPunctuation();
    /// By how much the line may become shorter, in points, if spaces shrink to a ratio of what they are.
    double GetLineWrapTolerance(double ratio) const;
    /// Whether the host may break the text behind the line elsewhere.
    bool UsesWrap() const;
    /// Whether a space is wider than the author's blank would be.
    bool IsTabSpace(Chars::const_iterator c) const;

    // Tabs.

    /// Makes tabs of the gaps that end at stops.
    void ApplyTabStops(const Story::TabStops& stops, const Rect& rect);
    /// The gap before the last item of the line, or the dots that lead to it, which `hasLeader` tells; the end for
    /// none.
    Chars::const_iterator FindEndTab(bool& hasLeader, bool dotsOnly) const;
    bool AreAllSpacesTheSameWidth() const;
    /// Makes several spaces of one that is as wide as several.
    void AddMultipleSpaces();

    // Paragraphs, lists and drop caps.

    /// The distance down from another line's baseline, in points.
    double GetLeading(const TextLineObject& above) const { return above.position.y - position.y; }
    /// From the baseline up to the top of the frame, and down to its bottom: the largest of the characters.
    double GetSpaceAbove() const;
    double GetMinSpaceBelow() const;
    /// Whether the line begins with a letter several lines high.
    bool IsDropCap() const;
    /// Behind the first letter or digit; the end for none.
    Chars::const_iterator GetDropCapEnd() const;
    /// Where the text behind the cap begins, in x.
    double GetDropCapLeft() const;
    /// The size of the text behind the cap.
    double GetDropCapLeading() const;
    int GetDropCapLineCount() const;
    /// Gives the cap the look of the text behind it; the answer holds what it had.
    Kernel::Counted<const Story::DropCapAtt> RemoveDropCap(double distance, int lineCount);

    void SetIsListDone(bool isDone);
    void SetNotList();
    void SetListStyleCharCount(int count) { listStyleCharCount = count; }

    void SetParagraphAtts(Kernel::Counted<const Story::ParagraphAtts> atts) { paragraphAtts = std::move(atts); }
    void SetIsParagraphFront(bool isFront) { isParagraphFront = isFront; }
    void SetIsParagraphBack(bool isBack) { isParagraphBack = isBack; }
    void SetNeedsLineBreak(bool isNeeded) { needsLineBreak = isNeeded; }

    // Output.

    void AppendTo(Story::GlyphSink& sink, bool isWrapped) const;
    /// Whether the line may be a header or a footer: a word, a page number, or entries with a wide gap between them.
    bool IsHeaderFooterCandidate() const;
    /// Surrogates are joined where characters are made, so that nothing is left to do; for hosts that call it.
    void CombineSurrogatePairs() {}
    /// Whether this is the last line of its column.
    bool IsColumnBack() const;
    /// Whether the line is scaled or slanted, so that no plain frame can hold it; turned text can stand in one.
    bool HasArtTransform() const;

    /// Adds the outlines of all glyphs, in page space.
    void AppendOutlinesTo(Geometry::PolyCurveDbl& target) const;
    /// Whether something other than a space is painted.
    bool HasFillOrStroke() const;
    /// In UTF-8; tabs as such, and nothing for a glyph whose character is not known.
    std::string GetText() const;

    Chars chars;
    /// The pen at the first character, in line space.
    Point position;
    double width = 0;
    /// How much wider the line's spaces are than its font's.
    double wordSpace = 1;
    /// The largest size of a character.
    double textHeight = 0;
    /// Leading characters that are the marker of a list.
    int listStyleCharCount = 0;
    Renderer::FillBlendMode::BlendMode blendMode{};
    /// Of the document when the line was made. Editable text has a space for each gap, whatever its font has.
    TextFidelity fidelity = TextFidelityExact;
    /// The text behind the line goes on in a new one.
    bool needsLineBreak = false;
    bool isParagraphFront = false;
    bool isParagraphBack = false;
    /// Of the paragraph that the line is in, shared by its lines; null before there are paragraphs.
    Kernel::Counted<const Story::ParagraphAtts> paragraphAtts;

    // Not for hosts.

    /// Where the pen is, with the baseline that the state writes on.
    Point GetEndPosition(const TextState& state) const;
    void MoveTo(const Point& point, TextState& state);
    void TextOut(const std::vector<char>& string, TextState& state);
    /// Counts where gaps end.
    void GetTabStops(FrequencyMap& map) const;
    /// Adds the stops that the line's gaps ask for; `rect` is the text box of the column.
    void GetTabStops(Story::TabStops& stops, const Rect& rect, const FrequencyMap& map) const;
    /// Read from the whole line when first asked for. Never null.
    const Kernel::Counted<ListAtt>& GetListCandidate() const;
    /// Whether the line can be the item behind that one.
    bool IsCompatibleList(const ListAtt& previous) const;

private:
    /// Dropped by whatever changes the start of the line.
    mutable Kernel::Counted<ListAtt> listCandidate;

    /// The line while characters of another are put in between its own.
    class MergeSweep;

    /// Where the text behind the marker of a list begins.
    std::size_t GetMarkerEnd() const;
    void ApplyEndTab(const Story::TabStops& stops, double tolerance);

    void MergeCharsFront(double x, Chars::const_iterator first, Chars::const_iterator last, double dy);
    void MergeCharsBack(double x, Chars::const_iterator first, Chars::const_iterator last, double dy);
    /// Of characters, the first of which has its pen that far from the start, in the object's own space.
    Rect GetBoxOf(Chars::const_iterator first, Chars::const_iterator last, double pen) const;
    void MeasureAll();
    /// The same, once the first `front` characters and those from `back` on are new, or have another width.
    void MeasureEnds(std::size_t front, std::size_t back);
    void KeepBaseline();
    bool MayHaveDropCap() const;
    /// Behind a cap that begins the line and reaches down below its text; 0 for none.
    std::size_t GetLowCapEnd() const;

    void ApplyLetterSpace(std::size_t first, std::size_t last, double ems);
    /// Of the character at `index`, with the kerning and the word space that it has.
    double GetCharStoryWidth(std::size_t index) const;
    void AdjustAutoKern();
    void AdjustGlobalLetterSpaceAvailable();
    void AdjustGlobalLetterSpaceWholeLine();
    void AdjustSpaceAtts();
    void ShiftErrorsToSpaces();
    void ExpandLigatures();
    void ApplyFixedSpaces();
    void AdjustWordSpace();
    void LetterSpaceSpaces();

    double GetMaxKern(const Char& c) const { return c.GetSize() / 6; }
    bool CanMoveToX(double x) const;
    bool CanMoveToY(double y, const Atts& atts) const;
    /// Adds to the gap behind a character, or to `next` if that is a space. If the gap is one to type, it is the
    /// answer, to be put behind the character.
    std::optional<Char> AddSpace(Char& c, double amount, Char* next);
    void AddSpaceAtEnd(double amount);
    Atts GetSpaceAtts(const Char& c) const;
    /// A space that nobody would see as one.
    static bool IsThinSpace(const Char& c);
    void RemoveThinSpace(std::size_t index);

    void ReorderNegativeWidths();
    void SortByPen();
    void StripLeadingSpaces();
    void RemoveRedundantSpaces();
    void ConvertSoftHyphens();
    void ConvertLetterSpaceIntoSpaces();
    void StripTrailingSpaces();
    /// By how much the baseline is below that of the largest text.
    double FindBaseline() const;
    /// Without moving a glyph.
    void MoveBaseline(double shift);
};

} // namespace Quillet
