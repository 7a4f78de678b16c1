#pragma once

#include <Quillet/Char.h>
#include <Quillet/Object.h>
#include <Quillet/TextFidelity.h>

#include <Geometry/PolyCurveDbl.h>
#include <Kernel/PointT.h>
#include <Renderer/FillBlendMode.h>

#include <optional>
#include <string>
#include <vector>

namespace Quillet {

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
    /// Where the pen is, with the baseline that the state writes on.
    Point GetEndPosition(const TextState& state) const;
    void SetBlendMode(Renderer::FillBlendMode::BlendMode mode) { blendMode = mode; }
    /// Whether a space stands in a font that has none.
    bool HasUndefinedSpace() const;

    /// Whether text of these attributes at a point of line space goes on with this line.
    bool CanMoveTo(const Point& point, const Atts& atts) const;
    void MoveTo(const Point& point, TextState& state);
    /// Moves the pen back by `amount`.
    void Kern(double amount);
    void TextOut(const std::vector<char>& string, TextState& state);
    /// Turns what was shown into what was typed, once no more text comes.
    void OnEndOfLine();

    /// The start of the baseline in the object's own space.
    Point GetGdiPosition() const { return {position.x, -position.y}; }
    /// The baseline in the object's own space, a box without height.
    Rect GetGdiTextBox() const;
    /// A transform that only slants the line becomes the slant of its glyphs; the clip stays where it is on the page.
    void MoveShearToGlyphs();

    /// The width that text of these attributes has by the font's own measures, in points.
    double GetStoryWidth(Chars::const_iterator first, Chars::const_iterator last, bool noAutoKern,
                         double wordSpaceRatio) const;

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
    bool needsLineBreak = false;
    bool isParagraphFront = false;
    bool isParagraphBack = false;

private:
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
    void OptimiseBaseline();
};

} // namespace Quillet
