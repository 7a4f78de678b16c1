#pragma once

namespace Quillet {
class ColumnObject;
}

namespace Host {

class SvgPaint;
class XmlWriter;

/// Appends a column: one text element, with a span for each line, in which each word stands where the page has it.
/// Where glyphs change their scale or slant, which only an element can have, another element begins. Highlights lie
/// behind it as rectangles.
void AddColumn(XmlWriter& svg, const Quillet::ColumnObject& column, SvgPaint& paint);

} // namespace Host
