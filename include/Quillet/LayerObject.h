#pragma once

#include <Quillet/GroupObject.h>

#include <Kernel/Consolidated.h>
#include <Renderer/Colour.h>

namespace Quillet {

/// A group that the host shows as one of its layers. It stays through all simplification, even when it is empty.
class QUILLET_API LayerObject : public GroupObject
{
public:
    bool isVisible = true;
    bool isPrintable = true;
    bool isEditable = true;
    /// The colour that marks the layer in a user interface; null if the file names none.
    Kernel::Consolidated<Renderer::Colour> colour;

    explicit LayerObject(Kernel::Counted<const Page> newPage);
    ~LayerObject() override;

    bool IsPreserve() const override;

    void SetIsVisible(bool visible) { isVisible = visible; }
    void SetIsPrintable(bool printable) { isPrintable = printable; }
    void SetIsEditable(bool editable) { isEditable = editable; }
    void SetColour(Kernel::Consolidated<Renderer::Colour> newColour);
};

} // namespace Quillet
