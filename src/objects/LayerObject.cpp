#include <Quillet/LayerObject.h>
#include <Quillet/Page.h>

#include "objects/SoftMask.h"

#include <utility>

namespace Quillet {

LayerObject::LayerObject(Kernel::Counted<const Page> newPage) : GroupObject(Kind::Layer, std::move(newPage)) {}

LayerObject::~LayerObject() = default;

bool LayerObject::IsPreserve() const
{
    return true;
}

void LayerObject::SetColour(Kernel::Consolidated<Renderer::Colour> newColour)
{
    colour = std::move(newColour);
}

} // namespace Quillet
