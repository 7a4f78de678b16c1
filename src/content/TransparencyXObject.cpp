#include "content/TransparencyXObject.h"

#include "colour/ColourSpace.h"
#include "colour/ColourSpaceFactory.h"
#include "content/GraphicsStateStack.h"
#include "document/Resources.h"
#include "document/Dictionary.h"
#include "objects/SoftMask.h"

#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>

namespace Quillet {

TransparencyXObject::TransparencyXObject(Kernel::Counted<Dictionary> dictionary,
                                         Kernel::Counted<const Resources> inherited)
    : FormXObject(dictionary, std::move(inherited))
{
    const auto group = Kernel::MakeCounted<Dictionary>(dictionary->GetRef("Group"));
    const auto factory = streamRef.GetColourSpaceFactory();
    if (factory && group->DictionarySeek("CS")) groupColourSpace = factory->Make(group, resources);
    isIsolated = group->GetBool("I", false);
    isKnockout = group->GetBool("K", false);
    group->Check(!isKnockout, Error::UnimplementedTransparency);
}

TransparencyXObject::~TransparencyXObject() = default;

void TransparencyXObject::Draw(GraphicsStateStack& stack, bool) const
{
    stack.Save();
    GraphicsState& state = stack.GetTop();
    auto group = Kernel::MakeCounted<GroupObject>(stack.page);
    group->SetOpacity(state.fillAlpha);
    group->SetBlendMode(state.blendMode);
    group->SetSoftMask(state.softMask);
    group->SetIsIsolated(isIsolated);
    group->SetIsKnockout(isKnockout);
    group->SetIsXObject(true);
    state.PushGroup(std::move(group));
    // The group carries these now.
    state.SetAlpha(false, 1.0);
    state.SetAlpha(true, 1.0);
    state.SetBlendMode(Renderer::FillBlendMode::Normal);
    state.SetSoftMask(nullptr);
    FormXObject::Draw(stack, true);
    stack.Restore();
}

Kernel::Counted<GroupObject> TransparencyXObject::MakeObjects(Kernel::NonCounted<const Page> page) const
{
    const auto stack = Kernel::MakeCounted<GraphicsStateStack>(page);
    Accept(stack, false);
    return stack->root;
}

} // namespace Quillet
