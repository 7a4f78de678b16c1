#include "objects/reduction/Reduce.h"

#include <Kernel/Trace.h>

namespace Quillet {

namespace Reduction {

namespace {

/// A pass that looks at one group at a time, as one over the tree.
template <void (GroupObject::*pass)()>
void OnEachGroup(GroupObject& root, const Rect&)
{
    root.VisitSubGroups([](GroupObject* group) { (group->*pass)(); });
}

/// One that looks at the root.
template <void (GroupObject::*pass)()>
void OnRoot(GroupObject& root, const Rect&)
{
    (root.*pass)();
}

/// One that needs no page.
template <void (*pass)(GroupObject&)>
void OnTree(GroupObject& root, const Rect&)
{
    pass(root);
}

constexpr auto c_updateBBoxes = OnRoot<&GroupObject::UpdateBBoxes>;
constexpr auto c_reduceGradient = OnEachGroup<&GroupObject::ReduceGradient>;
constexpr auto c_convertClippedRectangles = OnEachGroup<&GroupObject::ConvertClippedRectangles>;
constexpr auto c_removeEmptyGroups = OnEachGroup<&GroupObject::RemoveEmptyGroups>;
constexpr auto c_extendClippingGroups = OnEachGroup<&GroupObject::ExtendClippingGroups>;

constexpr Pass c_passes[] = {
    {"UpdateBBoxes", c_updateBBoxes},
    {"ReduceGradient", c_reduceGradient},
    {"ConvertClippedRectangles", c_convertClippedRectangles},
    {"RemoveClippedObjects", OnTree<RemoveClippedObjects>},
    {"RemoveEmptyGroups", c_removeEmptyGroups},
    {"CombineAdjacentLayers", OnEachGroup<&GroupObject::CombineAdjacentLayers>},
    {"RemoveRedundantClipping", RemoveRedundantClipping},
    {"ExtendClippingGroups", c_extendClippingGroups},
    {"FlattenSubGroups", OnTree<FlattenSubGroups>},
    // A fill and the stroke of its outline stand side by side only once their clips are out of the way.
    {"CombineFillStroke", OnEachGroup<&GroupObject::CombineFillStroke>},
    {"ConvertTextDecorations", OnEachGroup<&GroupObject::ConvertTextDecorations>, Condition::EditableText},
    {"ReorderText", OnTree<ReorderText>},
    {"CombineTextLines", OnEachGroup<&GroupObject::CombineTextLines>},
    // Once more for rules that run below a line which stood in pieces.
    {"ConvertTextDecorations", OnEachGroup<&GroupObject::ConvertTextDecorations>, Condition::EditableText},
    {"IsolateAdjacentColumns", OnEachGroup<&GroupObject::IsolateAdjacentColumns>},
    {"MergeAdjacentColumns", OnEachGroup<&GroupObject::MergeAdjacentColumns>, Condition::EditableLines},
    {"IsolateHeadersFooters", OnRoot<&GroupObject::IsolateHeadersFooters>, Condition::EditableLines},
    {"SetParagraphs", OnEachGroup<&GroupObject::SetParagraphs>},
    {"IsolateTrim", OnRoot<&GroupObject::IsolateTrim>},
    {"AvoidTooManyChildren", OnEachGroup<&GroupObject::AvoidTooManyChildren>},
};

constexpr Pass c_gradientPasses[] = {
    {"UpdateBBoxes", c_updateBBoxes},
    {"ReduceGradient", c_reduceGradient},
    {"ConvertClippedRectangles", c_convertClippedRectangles},
    {"RemoveClippedObjects", OnTree<RemoveClippedObjects>},
    {"RemoveEmptyGroups", c_removeEmptyGroups},
    {"RemoveRedundantClipping", RemoveRedundantClipping},
    {"ExtendClippingGroups", c_extendClippingGroups},
    {"FlattenSubGroups", OnTree<FlattenSubGroups>},
};

void Run(std::span<const Pass> passes, GroupObject& root, const Rect& pageRect)
{
    for (const Pass& pass : passes) {
        if (!pass.IsDue(root)) continue;
        Kernel::Trace("reduce: %1\n", pass.name);
        pass.run(root, pageRect);
    }
}

} // namespace

bool Pass::IsDue(const GroupObject& root) const
{
    switch (condition) {
    case Condition::Always:
        return true;
    case Condition::EditableText:
        return root.GetTextFidelity() != TextFidelityExact;
    case Condition::EditableLines:
        return root.GetTextFidelity() != TextFidelityExact && root.IsGroupTextLines();
    }
    return true;
}

std::span<const Pass> GetPasses()
{
    return c_passes;
}

} // namespace Reduction

void GroupObject::Reduce(const Rect& pageRect)
{
    Reduction::Run(Reduction::c_passes, *this, pageRect);
}

void GroupObject::ReduceGradients(const Rect& pageRect)
{
    Reduction::Run(Reduction::c_gradientPasses, *this, pageRect);
}

} // namespace Quillet
