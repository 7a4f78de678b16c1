#include "exporters/JsonValues.h"

#include "exporters/ColourValues.h"
#include "exporters/Costs.h"
#include "exporters/JsonWriter.h"

#include <Quillet/Budget.h>

#include <Renderer/Colour.h>
#include <Renderer/FillGradient.h>

namespace Host {

using namespace Quillet;

void WriteText(JsonWriter& json, std::string_view text)
{
    json.Text(Budget::Spend(text.size() * Costs::c_jsonTextByte) ? text : "");
}

void WriteNumbers(JsonWriter& json, std::initializer_list<double> values)
{
    json.BeginArray();
    for (const double value : values)
        json.Number(value);
    json.EndArray();
}

void WriteBox(JsonWriter& json, const Kernel::RectT<double>& box)
{
    if (!box.IsEmpty()) {
        WriteNumbers(json, {box.left, box.top, box.right, box.bottom});
        return;
    }
    // Text without a glyph to see has no box.
    json.BeginArray();
    for (int i = 0; i < 4; ++i)
        json.Integer(0);
    json.EndArray();
}

void WriteColour(JsonWriter& json, const Renderer::Colour& colour)
{
    const ColourValues components(colour);
    json.BeginObject();
    json.Key("model").Text(components.model);
    json.Key("values").BeginArray();
    for (const double value : components.values)
        json.Number(value);
    json.EndArray();
    json.Key("alpha").Number(colour.GetAlpha());
    WriteText(json.Key("name"), colour.GetName());
    // Of a named colour, how it looks at this tint: who does not have the ink draws that.
    const Renderer::Colour& plain = colour.GetPlain();
    if (&plain != &colour && Budget::Spend(Costs::c_jsonEntry)) WriteColour(json.Key("alternate"), plain);
    json.EndObject();
}

namespace {

void WriteGradient(JsonWriter& json, const Renderer::FillGradient& fill, const Renderer::FillDescriptor& descriptor)
{
    json.BeginObject();
    json.Key("kind").Text(fill.type == Renderer::FillGradient::Linear ? "linear" : "elliptical");
    json.Key("stops").BeginArray();
    for (const Renderer::ColourPosition& stop : fill.gradient->stops) {
        if (!Budget::Spend(Costs::c_jsonEntry)) break;
        json.BeginObject();
        json.Key("position").Number(stop.position);
        WriteColour(json.Key("colour"), *stop.colour);
        json.EndObject();
    }
    json.EndArray();
    const auto& place = descriptor.transform;
    WriteNumbers(json.Key("transform"), {place.a, place.b, place.c, place.d, place.e, place.f});
    json.EndObject();
}

} // namespace

void WriteFill(JsonWriter& json, const Renderer::FillDescriptor& descriptor)
{
    if (!descriptor.IsEmpty() && descriptor.fill->GetKind() == Renderer::Fill::Kind::Gradient) {
        WriteGradient(json, static_cast<const Renderer::FillGradient&>(*descriptor.fill), descriptor);
        return;
    }
    const auto colour = descriptor.IsEmpty() ? nullptr : descriptor.fill->GetColour();
    if (!colour) {
        json.Null();
        return;
    }
    json.BeginObject();
    json.Key("kind").Text("solid");
    WriteColour(json.Key("colour"), *colour);
    json.EndObject();
}

void AddBlending(JsonWriter& json, double opacity, Renderer::FillBlendMode::BlendMode mode)
{
    if (opacity != 1) json.Key("opacity").Number(opacity);
    if (mode != Renderer::FillBlendMode::Normal) json.Key("blendMode").Text(Renderer::FillBlendMode::GetName(mode));
}

} // namespace Host
