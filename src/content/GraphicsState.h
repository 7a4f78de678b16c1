#pragma once

#include <Quillet/ErrorForwarder.h>

#include "fonts/TextState.h"
#include "objects/PaintState.h"

#include <Geometry/PolyCurveDbl.h>
#include <Geometry/WindingOrderMode.h>
#include <Renderer/FillBlendMode.h>
#include <Geometry/AffineTransform.h>

#include <Kernel/Counted.h>
#include <Kernel/NonCounted.h>
#include <Kernel/RectT.h>

#include <vector>

namespace Quillet {

class ColourSpace;
class Font;
class GroupObject;
class Object;
class Page;
class TextHandler;

/// One graphics state of a content run: how objects are painted and text is set, and the group into which objects are
/// being added.
///
/// Copied at every save, so its heavy members are shared by count; who changes a shared one clones it first. A setter
/// that changes how text looks tells the text handler; the cheap ones among them do nothing on an equal value.
class QUILLET_API GraphicsState : public ErrorForwarder, public PaintState, public TextState
{
public:
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
    /// How text looks in this state, on a line with this transform.
    Kernel::Consolidated<Story::GlyphAtts> MakeGlyphAtts(const Params& lineTransform) const;

    const Kernel::Counted<const ColourSpace>& GetColourSpace(bool isStroke) const
    {
        return isStroke ? strokeColourSpace : fillColourSpace;
    }

    Kernel::Counted<const Page> page;
    Kernel::Counted<GroupObject> currentGroup;
    TextHandler& textHandler;
    /// `ltCurrent` as it was at the start of the page or form; patterns refer to it.
    Params ltDefault;
    Kernel::Counted<const ColourSpace> fillColourSpace;
    Kernel::Counted<const ColourSpace> strokeColourSpace;

    /// Nesting of forms in which this state was made.
    int xObjectDepth = 0;

private:
    void OnGraphicsStateChanging();
    void OnLineStyleChanging();
    void ApplyLineDash();
    void SetTextValue(double& field, double value);
};

} // namespace Quillet
