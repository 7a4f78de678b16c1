#pragma once

#include <Kernel/RectT.h>
#include <Renderer/FillBlendMode.h>
#include <Renderer/FillDescriptor.h>

#include <initializer_list>
#include <string_view>

namespace Renderer {
class Colour;
}

namespace Host {

class JsonWriter;

// What many objects have. Each writes one value, the last one keys and their values.

/// A text of the file; empty if there is no more to pay for it.
void WriteText(JsonWriter& json, std::string_view text);
void WriteNumbers(JsonWriter& json, std::initializer_list<double> values);
/// Zeros for an empty box.
void WriteBox(JsonWriter& json, const Kernel::RectT<double>& box);
void WriteColour(JsonWriter& json, const Renderer::Colour& colour);
/// Null for none.
void WriteFill(JsonWriter& json, const Renderer::FillDescriptor& descriptor);
/// Without what is default.
void AddBlending(JsonWriter& json, double opacity, Renderer::FillBlendMode::BlendMode mode);

} // namespace Host
