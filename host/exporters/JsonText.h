#pragma once

namespace Quillet {
class ColumnObject;
class TextLineObject;
} // namespace Quillet

namespace Story {
class StyleSheet;
}

namespace Host {

class JsonWriter;

// Text as JSON: the keys of a node, or a value. What there is no more to pay for (`Quillet::Budget`) is left out.

/// A line as it was shown.
void AddTextLine(JsonWriter& json, const Quillet::TextLineObject& line);
/// A frame with its paragraphs.
void AddColumn(JsonWriter& json, const Quillet::ColumnObject& column);
/// An array; empty for null.
void WriteStyles(JsonWriter& json, const Story::StyleSheet* sheet);

} // namespace Host
