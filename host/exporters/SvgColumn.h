#pragma once

#include <pugixml.hpp>

namespace Quillet {
class ColumnObject;
}

namespace Host {

class SvgPaint;

/// Appends a column: one text element, with a span for each line, in which each word stands where the page has it.
/// Where glyphs change their scale or slant, which only an element can have, another element begins. Highlights lie
/// behind it as rectangles.
void AddColumn(pugi::xml_node parent, const Quillet::ColumnObject& column, SvgPaint& paint);

} // namespace Host
