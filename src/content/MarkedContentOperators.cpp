#include "content/MarkedContentOperators.h"

#include "document/ArgVec.h"
#include "content/GraphicsStateStack.h"
#include "document/OCProperties.h"
#include "document/Resources.h"
#include "document/Dictionary.h"
#include "document/DocumentState.h"

#include <Quillet/LayerObject.h>
#include <Quillet/Page.h>
#include <Quillet/PdfDocument.h>
#include <Renderer/ColourRGB.h>

#include <algorithm>
#include <string_view>
#include <vector>

namespace Quillet {

namespace {

constexpr auto c_category = OperatorCategory::Page | OperatorCategory::Text;

bool IsOff(std::string_view state)
{
    constexpr std::string_view off = "OFF";
    return std::equal(state.begin(), state.end(), off.begin(), off.end(),
                      [](char a, char b) { return a == b || a == b - 'A' + 'a'; });
}

Kernel::Counted<Dictionary> GetSubDictionary(Dictionary& dictionary, const char* key)
{
    return Kernel::MakeCounted<Dictionary>(dictionary.GetRef(key));
}

void ApplyUsage(Dictionary& group, LayerObject& layer)
{
    const auto usage = GetSubDictionary(group, "Usage");
    layer.SetIsVisible(!IsOff(GetSubDictionary(*usage, "View")->GetName("ViewState")));
    layer.SetIsPrintable(!IsOff(GetSubDictionary(*usage, "Print")->GetName("PrintState")));
}

/// The configuration hides and locks; it never shows what its own usage hides.
void ApplyConfiguration(const OCProperties& configuration, const Ref& group, LayerObject& layer)
{
    if (configuration.IsHidden(group)) layer.SetIsVisible(false);
    if (configuration.IsLocked(group)) layer.SetIsEditable(false);
}

/// A membership dictionary names several groups and is none: its content stays in the flow.
Kernel::Counted<LayerObject> ParseOptionalContentProperties(Dictionary& group, Kernel::NonCounted<const Page> page)
{
    if (group.GetName("Type") != "OCG") return nullptr;
    std::string name = group.GetString("Name");
    // Each layer has its name to itself.
    if (name.empty() || !Budget::Spend(name.size())) return nullptr;
    auto layer = Kernel::MakeCounted<LayerObject>(Kernel::Counted<const Page>(page.Get()));
    layer->SetName(std::move(name));
    ApplyUsage(group, *layer);
    const Kernel::NonCounted<PdfDocument> document = page->ref.document;
    const OCProperties* const properties = document ? document->GetState().ocProperties.Get() : nullptr;
    if (properties) ApplyConfiguration(*properties, group.object, *layer);
    return layer;
}

Kernel::Counted<LayerObject> ParseLayerProperties(Dictionary& properties, Kernel::NonCounted<const Page> page)
{
    std::string title = properties.GetString("Title");
    if (title.empty() || !Budget::Spend(title.size())) return nullptr;
    auto layer = Kernel::MakeCounted<LayerObject>(Kernel::Counted<const Page>(page.Get()));
    layer->SetName(std::move(title));
    layer->SetIsVisible(properties.GetBool("Visible", layer->isVisible));
    layer->SetIsPrintable(properties.GetBool("Printed", layer->isPrintable));
    layer->SetIsEditable(properties.GetBool("Editable", layer->isEditable));
    std::vector<double> colour;
    if (properties.GetRealVec("Color", colour) && colour.size() == 3) {
        const auto channel = [&](std::size_t index) { return static_cast<float>(colour[index] / 65535); };
        layer->SetColour(Renderer::ColourRGB::Create(channel(0), channel(1), channel(2), 1.0f, {}));
    }
    return layer;
}

} // namespace

void OpBeginMarkedContent::Execute(const ArgVec& args) const
{
    CheckCall(c_category, args, 1);
    stack->markedContents.push_back({GetState().GetPreviousObject(), nullptr});
}

void OpBeginMarkedContentProperties::Execute(const ArgVec& args) const
{
    CheckCall(c_category, args, 2);
    MarkedContent content{GetState().GetPreviousObject(), nullptr};
    const std::string& tag = args.GetName(0);
    const bool isOptional = tag == "OC";
    if ((isOptional || tag == "Layer") && args.count > 1 && args.GetType(1) == Token::TokenName) {
        const auto& resources = GetResources();
        const auto properties = resources ? resources->GetProperties(args.GetName(1)) : nullptr;
        if (properties) {
            content.layer = isOptional ? ParseOptionalContentProperties(*properties, GetPage())
                                       : ParseLayerProperties(*properties, GetPage());
        }
    }
    stack->markedContents.push_back(std::move(content));
}

void OpEndMarkedContent::Execute(const ArgVec& args) const
{
    CheckCall(c_category, args, 0);
    if (stack->markedContents.empty()) return;
    const MarkedContent content = std::move(stack->markedContents.back());
    stack->markedContents.pop_back();
    if (!content.layer) return;
    const Kernel::Counted<GroupObject> group = content.layer->AcquireMarkedContent(content.previousObject);
    if (!group) return;
    // An empty layer stays where the next object goes; a full one takes the place of what it took.
    if (content.layer->children.empty()) {
        if (content.layer->IsLayer()) GetState().AddObject(content.layer);
        return;
    }
    stack->PutLayer(content.layer, group);
}

} // namespace Quillet
