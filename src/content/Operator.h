#pragma once

#include <Quillet/ErrorForwarder.h>

#include "content/ClippingAction.h"
#include "content/OperatorCategory.h"

#include <Kernel/Counted.h>
#include <Kernel/NonCounted.h>

#include <string>

namespace Quillet {

class ArgVec;
class ColourSpaceFactory;
class GraphicsState;
class GraphicsStateStack;
class Page;
class PdfPath;
class PdfSubPath;
class RasterFormatPicker;
class Resources;
class TextHandler;

/// Handler of one operator keyword. Constant after `Init`: whatever changes during a run is in the stack.
class QUILLET_API Operator : public ErrorForwarder
{
public:
    virtual void Execute(const ArgVec& args) const = 0;
    /// Gives the vote of this operator in the choice of a page's pixel format. Changes no graphics state.
    virtual void AddRasterFormats(RasterFormatPicker& picker, const ArgVec& args) const;
    /// The class's name without "Op", for diagnostics.
    virtual std::string GetName() const;

    void Init(Kernel::NonCounted<GraphicsStateStack> newStack);

    /// Reports `general` once if the operands are not `count` (any number for -1) or the operator may not stand here.
    /// False only for a wrong number of operands.
    bool CheckCall(OperatorCategory::Type mask, const ArgVec& args, int count) const;

    GraphicsState& GetState() const;
    Kernel::NonCounted<const Page> GetPage() const;
    /// Null for a page without resources.
    const Kernel::Counted<const Resources>& GetResources() const;
    Kernel::NonCounted<ColourSpaceFactory> GetColourSpaceFactory() const;
    TextHandler& GetTextHandler() const;
    PdfPath& GetPath() const;
    /// The subpath that a drawing operator extends. Starts one at the origin, with a report, if there is no path, and
    /// one at the last point of a closed subpath.
    PdfSubPath& GetSubPath() const;
    ClippingAction::Type GetClippingAction() const;
    void SetClippingAction(ClippingAction::Type action) const;
    void SetCurrentCategory(OperatorCategory::Type category) const;
    void FlushObjects() const;
    bool IsInCompatibility() const;

    Kernel::NonCounted<GraphicsStateStack> stack;
};

} // namespace Quillet
