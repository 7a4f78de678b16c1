#pragma once

#include "exporters/LongText.h"

namespace Quillet {
class PdfDocument;
}

namespace Story {
class StyleSheet;
}

namespace Host {

struct PageView;

// A document as one HTML file without scripts or anything that would have to be fetched: pages are boxes of their size,
// frames boxes in them that can be edited, and text flows in these as paragraphs. What is no text is drawn as SVG,
// above and below the frames as it was painted.

LongText MakeHtmlHead(const Quillet::PdfDocument& document);
/// What there is no more to pay for (`Quillet::Budget`) is left out; then the view's problems have `CutShort`
/// afterwards.
LongText MakePageHtml(const PageView& view);
LongText MakeHtmlTail(const Story::StyleSheet& styles);

} // namespace Host
