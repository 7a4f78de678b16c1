#pragma once

#include "content/XObject.h"

#include <Quillet/Ref.h>

#include <Kernel/RectT.h>
#include <Geometry/AffineTransform.h>

#include <vector>

namespace Quillet {

class SequentialSource;

/// A content stream that other content draws as one object.
class QUILLET_API FormXObject : public XObject
{
public:
    FormXObject(Kernel::Counted<Dictionary> dictionary, Kernel::Counted<const Resources> inherited);
    ~FormXObject() override;

    /// Runs the form's stream over `stack`, inside a group of its own unless `noGroup`.
    ///
    /// False, and nothing drawn, if the form is being drawn in this stack already or lies too deep in others: such a
    /// drawing has no end.
    bool Accept(Kernel::NonCounted<GraphicsStateStack> stack, bool noGroup) const override;

    /// Form space to the user space of whoever draws it.
    Raster::AffineTransform::Params matrix;
    Kernel::RectT<double> bbox;
    Ref streamRef;
    /// Own or inherited; null only if nobody on the way has any.
    Kernel::Counted<const Resources> resources;

protected:
    /// What `Accept` does once it is sure that there is an end.
    virtual void Draw(GraphicsStateStack& stack, bool noGroup) const;

private:
    enum class Content { Unread, Read, Kept, TooLong };

    Kernel::Counted<SequentialSource> OpenContent() const;
    void ReadMatrix(Dictionary& dictionary);

    /// A form that is drawn again keeps what its stream decodes to, if that is short: setting up the decoders would
    /// cost more than the drawing.
    mutable Content content = Content::Unread;
    mutable std::vector<char> keptContent;
};

} // namespace Quillet
