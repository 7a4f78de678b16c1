#pragma once

#include "StyleNames.h"

namespace Quillet {
class ColumnObject;
class TextLineObject;
} // namespace Quillet

namespace Host {

class JsonWriter;

// Text as JSON: the keys of a node, or a value. What there is no more to pay for (`Quillet::Budget`) is left out.

/// A line as it was shown.
void AddTextLine(JsonWriter& json, const Quillet::TextLineObject& line);
/// A frame with its paragraphs, whose styles are called as `styles` has it.
void AddColumn(JsonWriter& json, const Quillet::ColumnObject& column, const StyleNames::Names& styles);
/// An array.
void WriteStyles(JsonWriter& json, const Story::StyleSheet& sheet);

} // namespace Host
