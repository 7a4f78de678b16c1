#include <Quillet/LayerObject.h>
#include <Quillet/Page.h>

#include <Kernel/LocalisedString.h>

#include <algorithm>

namespace Quillet {

namespace {

constexpr double c_overlapTolerance = 1e-5;

} // namespace

/// Printer's marks are drawn last, as a rule. The trim box is compared as the page has it, whatever its origin.
void GroupObject::IsolateTrim()
{
    const Kernel::Counted<const Page> trimmed(GetPage().Get());
    if (!trimmed) return;
    const Rect trim = PageBase::ApplyRotate(trimmed->GetTrimBox(), trimmed->GetRotate());
    const auto isInside = [&](const Kernel::Counted<Object>& child) {
        return (child->AsGroup() && child->IsPreserve()) || child->PreciseOverlaps(trim, c_overlapTolerance);
    };
    const auto first = std::find_if(children.rbegin(), children.rend(), isInside).base();
    if (first == children.end()) return;

    const auto layer = Kernel::MakeCounted<LayerObject>(trimmed);
    layer->SetName(Kernel::LocalisedString("Trim", "Layer name"));
    layer->Insert(layer->children.end(), first, children.end());
    children.erase(first, children.end());
    layer->UpdateBBox();
    Add(layer);
}

} // namespace Quillet
