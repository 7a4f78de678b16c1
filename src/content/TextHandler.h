#pragma once

#include "fonts/TextState.h"

#include <Quillet/Char.h>

#include <Geometry/PolyCurveDbl.h>
#include <Geometry/AffineTransform.h>

#include <Kernel/Counted.h>
#include <Kernel/Export.h>
#include <Kernel/NonCounted.h>
#include <Kernel/PointT.h>

#include <optional>
#include <vector>

namespace Quillet {

class GraphicsState;
class GraphicsStateStack;
class TextLineObject;

/// Follows the text matrix of a content run and turns shown strings into lines.
///
/// The matrix of a string is split into what its line sits under, a turn, and what each glyph is put through within the
/// line, scales and a slant. A string goes on with the pending line as long as it could have been typed there.
class QUILLET_API TextHandler
{
public:
    using Params = Raster::AffineTransform::Params;

    explicit TextHandler(Kernel::NonCounted<GraphicsStateStack> runStack);
    ~TextHandler();
    TextHandler(const TextHandler&) = delete;
    TextHandler& operator=(const TextHandler&) = delete;

    GraphicsState& GetState() const;
    void BeginText();
    void EndText();
    void SetLtText(const Params& transform);
    /// The next line starts where the pen is now.
    void SetLtTextLineStart() { ltTextLineStart = GetLtText(); }
    void TextOut(const std::vector<char>& string);
    /// Moves the pen back by thousandths of the size.
    void TextKern(double thousandths);
    /// Takes the pending line into the tree.
    void FlushText();
    /// Clips to the outlines of the text that asked for it.
    void FlushClipping();
    /// The attributes of text shown from now on are to be worked out anew.
    void OnGraphicsStateChanging() { glyphAtts = nullptr; }
    /// The text matrix at the pen.
    Params GetLtText() const;
    /// The same, to page space.
    Params GetGdiLtText() const;

    Kernel::NonCounted<GraphicsStateStack> stack;
    Params ltText;
    /// Set since the last string was shown.
    bool isLtTextSet = false;
    /// Line space to page space, both with y upward: a turn.
    Params lineTransform;
    Params ltTextLineStart;
    /// As it was when the attributes were worked out.
    Params lastCtm;
    TextTransform textTransform;
    /// From upright glyphs to those of the font in which the last text was shown.
    Params glyphReversal;
    /// Whether that font turns its glyphs upside down.
    bool isFontMirrored = false;
    /// Where the pen was in line space when its line was taken away and nothing has moved it since.
    std::optional<Kernel::PointT<double>> penOfTakenLine;
    /// Null after a change of the state.
    Kernel::Consolidated<Story::GlyphAtts> glyphAtts;
    /// Never null; may be empty.
    Kernel::Counted<TextLineObject> line;
    Geometry::PolyCurveDbl clipOutline;

private:
    void UpdateTextAtts();
    /// Whether the pen stands in the line space and under the scales that were worked out last.
    bool IsPenInLineSpace() const;
    Kernel::PointT<double> GetPen() const;
    /// Takes what the text matrix at the pen is made of, and returns the pen in the line space of that.
    Kernel::PointT<double> Decompose();
    bool IsAsLineIs(const GraphicsState& state) const;
    void UpdateGlyphAtts(const TextTransform& transform);
    Kernel::Counted<TextLineObject> MakeLine() const;
};

} // namespace Quillet
