#pragma once

#include "exporters/LongText.h"

#include <Quillet/FontInfo.h>

#include <vector>

namespace Quillet {
class Page;
class PdfDocument;
} // namespace Quillet

namespace Story {
class StyleSheet;
}

namespace Host {

class JsonWriter;
struct PageView;

// What there is no more to pay for (`Quillet::Budget`) is left out of what these write; the text is JSON all the same.

/// The value of "document", an object.
void WriteDocument(JsonWriter& json, const Quillet::PdfDocument& document);

/// The fonts of a document, an array.
void WriteFonts(JsonWriter& json, const std::vector<Quillet::FontInfo>& fonts);

/// Begins the object of a page, with the members "index", "boxes", "rotate" and "size". Writes nothing if it throws.
void BeginPage(JsonWriter& json, const Quillet::Page& page, int index);

/// A document up to its first page; pages have commas between them.
LongText MakeJsonHead(const Quillet::PdfDocument& document);
/// A page with its tree.
LongText MakePageJson(const PageView& view);
/// What stands behind the last page: the styles of its text.
LongText MakeJsonTail(const Story::StyleSheet& styles);

} // namespace Host
