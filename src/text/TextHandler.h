#pragma once

#include "text/TextTransform.h"

#include <pixels/AffineTransform.h>

#include <Kernel/Export.h>
#include <Kernel/NonCounted.h>

namespace Quillet {

class GraphicsState;
class GraphicsStateStack;

/// Follows the text matrix of a content run and turns shown strings into lines.
class QUILLET_API TextHandler
{
public:
    using Params = Raster::AffineTransform::Params;

    explicit TextHandler(Kernel::NonCounted<GraphicsStateStack> runStack) : stack(runStack) {}

    GraphicsState& GetState() const;
    void BeginText();
    void EndText();
    void SetLtText(const Params& transform);
    /// The next line starts where the pen is now.
    void SetLtTextLineStart() { ltTextLineStart = GetLtText(); }
    /// Takes the pending line into the tree.
    void FlushText();
    /// The attributes of text shown from now on are to be worked out anew.
    void OnGraphicsStateChanging();
    /// The text matrix at the pen.
    Params GetLtText() const { return ltText; }

    Kernel::NonCounted<GraphicsStateStack> stack;
    Params ltText;
    /// Set since the last string was shown.
    bool isLtTextSet = false;
    Params ltTextLineStart;
};

} // namespace Quillet
