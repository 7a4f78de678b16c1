#pragma once

#include <Quillet/Object.h>
#include <Quillet/TextLineObject.h>

#include <vector>

namespace Story {
class GlyphSink;
class Story;
} // namespace Story

namespace Quillet {

class Paragraph;

/// Lines that read from top to bottom: what becomes one text frame of the host.
///
/// Transform, soft mask and clip are those of the first line, and all lengths are in points of the space that it gives,
/// y downward.
class QUILLET_API ColumnObject : public Object
{
public:
    using Lines = std::vector<Kernel::Counted<TextLineObject>>;

    explicit ColumnObject(int newId);
    /// A column like `source` with the lines of it from `first` on, which move here.
    ColumnObject(ColumnObject& source, int newId, Lines::const_iterator first);
    /// Lines that live on have no parent.
    ~ColumnObject() override;

    bool HasText() const override { return true; }
    void Clear() override;
    /// The boxes of the lines.
    void UpdateBBox() override;

    /// Whether the text cannot be a plain frame: it is slanted or stretched, or lines are not to be grouped. Such text
    /// stands at `GetStoryArtOrigin`, other text in `GetStoryFrameBox`.
    bool IsArtText() const;
    /// Of the first line; `Normal` for an empty column.
    Renderer::FillBlendMode::BlendMode GetBlendMode() const;

    /// Takes `line` into the column, if it belongs there: into one of the lines, or below the last if `tryAdjacent` and
    /// it goes on there. False leaves all as it was.
    bool TryMerge(const Kernel::Counted<TextLineObject>& line, bool tryAdjacent);
    /// Makes `line` the last one.
    void AddAdjacent(const Kernel::Counted<TextLineObject>& line);
    /// Merges `line` into the last line, if `tryLast` and it goes on there, or into one whose ink it meets.
    bool TryAddMerge(const Kernel::Counted<TextLineObject>& line, bool tryLast);
    /// Merges `line` into `target`, one of the lines, which moves to where it then belongs among them.
    void AddMerge(Lines::iterator target, const TextLineObject& line);
    /// Takes a line out; the boxes follow.
    void Remove(Lines::const_iterator line);

    /// Takes out the lines that belong beside this column, as one of their own; null for none. The new column has no
    /// parent.
    Kernel::Counted<ColumnObject> ExtractAdjacentColumn(Kernel::NonCounted<const Page> page);
    /// Splits the first line with a gap beside which there is text that no other line stands above or below; the answer
    /// is its right part, which stands behind it, `lines.end()` for none.
    Lines::iterator SplitAdjacentLines(Kernel::NonCounted<const Page> page);
    /// The lines from `first` on, as a column of their own without a parent.
    Kernel::Counted<ColumnObject> Split(Lines::iterator first, Kernel::NonCounted<const Page> page);
    /// Whether text from `left` to `right` stands above or below some line other than `line` and the first.
    bool BelongsInColumn(const TextLineObject& line, double left, double right) const;
    bool CanMergeColumn(const ColumnObject& other) const;
    /// The same where the boxes around the baselines are known: `above` of this column, `below` of the other.
    bool CanMergeColumn(const ColumnObject& other, const Rect& above, const Rect& below) const;
    /// Takes the lines of `other`, which is left empty.
    void MergeColumn(ColumnObject& other);

    /// Around the baselines.
    Rect GetBaseStoryFrameBox() const;
    Kernel::PointT<double> GetStoryArtOrigin() const;
    /// The frame in which the text flows as it stands in the file.
    Rect GetStoryFrameBox() const;
    /// From the first baseline up to the frame's top, and from the last one down to its bottom.
    double GetSpaceAbove() const;
    double GetSpaceBelow() const;
    /// The first of the widest, as the host sets them; null for an empty column.
    Kernel::Counted<TextLineObject> GetWidestLine() const;

    /// Finishes the lines, and works out what paragraphs they make and how these are set. Lines know it afterwards.
    void SetParagraphs();

    /// Pushes the text, once `SetParagraphs` has run. With `isWrapped`, lines end in spaces where the host may break
    /// them anew; without, each ends in a forced break.
    void AppendTo(Story::GlyphSink& sink, bool isWrapped) const;
    /// A host's hook; does nothing.
    void VerifyCompositionFidelity(const Kernel::Counted<Story::Story>& story);

    /// From top to bottom.
    Lines lines;

    // Not for hosts.
    using Paragraphs = std::vector<Kernel::Counted<Paragraph>>;

private:
    /// How far ink of any line reaches above and below its baseline, at least.
    double inkAbove = 0;
    double inkBelow = 0;

    void NoteInk(const TextLineObject& line);
    /// The topmost of the lines that begin beside a drop cap, if `cap` is one without text; the end for none.
    Lines::iterator FindLineOfCap(const TextLineObject& cap);
    /// The lowest line whose ink meets `box`; the topmost line if there is none. There are lines.
    Lines::iterator FindInk(const Rect& box);
    void SetListCandidates(Paragraphs& paragraphs);
    void SetListStyles(Paragraphs& paragraphs);
    /// The paragraphs of the next list, which are marked done. It is looked for from `next` on, 0 at first, which moves
    /// to where the list begins.
    static Paragraphs GetCompatibleLists(const Paragraphs& paragraphs, std::size_t& next);
    static int GetListAlign(const Paragraphs& paragraphs);
    static void SimplifyParagraphs(Paragraphs& paragraphs);
};

} // namespace Quillet
