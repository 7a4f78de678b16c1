#pragma once

#include <Quillet/ErrorForwarder.h>

#include "text/TextTransform.h"

#include <Quillet/Char.h>

#include <Geometry/PolyCurveDbl.h>
#include <Geometry/WindingOrderMode.h>
#include <Renderer/FillBlendMode.h>
#include <Geometry/AffineTransform.h>

#include <Kernel/Counted.h>
#include <Kernel/NonCounted.h>
#include <Kernel/RectT.h>

#include <vector>

namespace Renderer {
class FillDescriptor;
class LineStyle;
class LineStyleDescriptor;
} // namespace Renderer

namespace Quillet {

struct CodeSequence;
class ColourSpace;
class Font;
class GroupObject;
class Object;
class Page;
class SoftMask;
class TextHandler;

/// One graphics state of a content run, and the group into which objects are being added.
///
/// Copied at every save, so its heavy members are shared by count; who changes a shared one clones it first. A setter
/// that changes how text looks tells the text handler; the cheap ones among them do nothing on an equal value.
class QUILLET_API GraphicsState : public ErrorForwarder
{
public:
    using Params = Raster::AffineTransform::Params;

    GraphicsState(Kernel::NonCounted<const Page> statePage, TextHandler& handlerOfText);
    GraphicsState(const GraphicsState& other);
    GraphicsState(GraphicsState&& other) noexcept;
    ~GraphicsState() override;

    /// Places a page in output space: origin at the top left of the rotated `trim`, y downward, in points. Opens the
    /// group that everything is added to, clipped to `clip` unless that is empty. `crop` plays no part.
    void SetSource(const Kernel::RectT<double>& crop, const Kernel::RectT<double>& trim,
                   const Kernel::RectT<double>& clip, int rotate);
    void SetLtCurrent(const Params& transform) { ltCurrent = transform; }
    void SetLtDefault() { ltDefault = ltCurrent; }
    void SetXObjectDepth(int depth) { xObjectDepth = depth; }

    /// Opens a group that clips to `path` put through `transform`.
    void PushClippingPath(const Geometry::PolyCurveDbl& path, Geometry::WindingOrderMode mode, const Params& transform);
    void PushClippingPath(const Kernel::RectT<double>& rect, const Params& transform);
    void PushGroup(Kernel::Counted<GroupObject> group);
    void PopGroup();
    void SetCurrentGroup(Kernel::NonCounted<GroupObject> group);
    void AddObject(Kernel::Counted<Object> object);
    /// The newest leaf or empty group under the current group; null without a group.
    Kernel::Counted<Object> GetPreviousObject() const;
    /// Ends the text that depends on this state, which is about to go.
    void OnPop(const GraphicsState* previous);

    void SetLineWidth(double width);
    /// 0, 1, 2 as in the file; any other is `general` and 0.
    void SetLineCap(int cap);
    /// 0, 1, 2 as in the file; any other is `general` and the mitre, 0.
    void SetLineJoin(int join);
    void SetMiterLimit(double limit);
    /// Lengths in user space.
    void SetLineDash(const std::vector<double>& dash, double phase);

    void SetBlendMode(Renderer::FillBlendMode::BlendMode mode);
    void SetSoftMask(Kernel::Counted<const SoftMask> mask);
    void SetColourSpace(bool isStroke, Kernel::Counted<const ColourSpace> space);
    void SetFillDescriptor(bool isStroke, Kernel::Counted<Renderer::FillDescriptor> descriptor);
    /// A value outside 0 to 1 is ignored.
    void SetAlpha(bool isStroke, double alpha);

    void SetLeading(double value);
    void SetCharSpace(double value);
    void SetWordSpace(double value);
    void SetTextRise(double value);
    /// Horizontal scale in percent.
    void SetTextWidth(double value);
    void SetTextRenderMode(int mode);
    /// A negative size turns the sign of the horizontal scale.
    void SetFont(Kernel::Counted<const Font> newFont, double size);
    void SetTextTransform(const TextTransform& transform) { textTransform = transform; }
    void SetGlyphAtts(Kernel::Consolidated<Story::GlyphAtts> atts) { glyphAtts = std::move(atts); }
    /// Moves the pen off the line's baseline, downward.
    void SetAdvance(double distance);
    void AddAdvanceTo(Story::GlyphAtts& atts) const;
    /// How text looks in this state, on a line with this transform.
    Kernel::Consolidated<Story::GlyphAtts> MakeGlyphAtts(const Params& lineTransform) const;

    /// Appends what a code stands for, with a width in thousandths of the size; gives the advance in line space.
    double AddChars(std::vector<Char>& chars, const CodeSequence& sequence, int code, double width) const;
    /// Letter spacing belongs to the code, so that only the last character of one has it.
    double AddChar(std::vector<Char>& chars, char32_t unicode, int glyphIndex, int charCode, double width,
                   bool isEndOfCode = true) const;
    /// What a length of text space becomes in line space along the baseline, in percent.
    double GetAdvancePercent() const { return textTransform.x * textWidth * fontSign; }

    const Kernel::Counted<const ColourSpace>& GetColourSpace(bool isStroke) const
    {
        return isStroke ? strokeColourSpace : fillColourSpace;
    }
    const Kernel::Counted<Renderer::FillDescriptor>& GetFillDescriptor(bool isStroke) const
    {
        return isStroke ? strokeDescriptor : fillDescriptor;
    }
    double GetAlpha(bool isStroke) const { return isStroke ? strokeAlpha : fillAlpha; }

    /// Whether that paint cannot carry an alpha of its own.
    bool FillRequiresOpacity(bool isStroke) const;
    /// The paint with `transform` and `alpha` in it; the descriptor itself where neither changes anything.
    Kernel::Counted<Renderer::FillDescriptor> MakeFillDescriptorWithAlpha(bool isStroke, double alpha,
                                                                          const Params& transform) const;
    /// The line style with its width in the space that `transform` leads to.
    Kernel::Counted<Renderer::LineStyleDescriptor> MakeLineStyleDescriptor(const Params& transform) const;

    Kernel::Counted<const Page> page;
    Kernel::Counted<GroupObject> currentGroup;
    TextHandler& textHandler;
    /// User space to page output space.
    Params ltCurrent;
    /// The same as it was at the start of the page or form; patterns refer to it.
    Params ltDefault;
    /// As set, in user units.
    std::vector<double> lineDash;
    double lineDashPhase = 0;
    Kernel::Counted<const ColourSpace> fillColourSpace;
    Kernel::Counted<const ColourSpace> strokeColourSpace;
    /// Shared between states; its dashes are in multiples of its width.
    Kernel::Counted<Renderer::LineStyle> lineStyle;
    Kernel::Counted<Renderer::FillDescriptor> fillDescriptor;
    Kernel::Counted<Renderer::FillDescriptor> strokeDescriptor;
    double fillAlpha = 1;
    double strokeAlpha = 1;
    Kernel::Counted<const SoftMask> softMask;
    Renderer::FillBlendMode::BlendMode blendMode{};

    double charSpace = 0;
    double wordSpace = 0;
    double textWidth = 100;
    double textRise = 0;
    double fontSize = 0;
    double fontSign = 1;
    double leading = 0;
    /// Null stands for the default font, which is not loaded before text needs it.
    Kernel::Counted<const Font> font;
    /// Bit 1: fill, bit 0: stroke.
    int renderFlags = 2;
    int isTextClip = 0;
    TextTransform textTransform;
    /// Of the pen below the line's baseline.
    double advance = 0;
    Kernel::Consolidated<Story::GlyphAtts> glyphAtts;

    /// Nesting of forms in which this state was made.
    int xObjectDepth = 0;

private:
    void OnGraphicsStateChanging();
    void OnLineStyleChanging();
    void ApplyLineDash();
    void SetTextValue(double& field, double value);
};

} // namespace Quillet
