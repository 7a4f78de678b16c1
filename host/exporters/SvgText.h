#pragma once

namespace Quillet {
class TextLineObject;
} // namespace Quillet

namespace Host {

class SvgPaint;
class XmlWriter;

/// Appends a line, run by run and word by word, so that each word starts and ends where the page has it, whatever font
/// it is shown in.
void AddTextLine(XmlWriter& svg, const Quillet::TextLineObject& line, SvgPaint& paint);

} // namespace Host
