#pragma once

#include "Problems.h"
#include "exporters/LongText.h"

#include <Quillet/FontInfo.h>

#include <vector>

namespace Quillet {
class GroupObject;
class Page;
class PdfDocument;
} // namespace Quillet

namespace Host {

class JsonWriter;

// What there is no more to pay for (`Quillet::Budget`) is left out of what these write; the text is JSON all the same.

/// The value of "document", an object.
void WriteDocument(JsonWriter& json, const Quillet::PdfDocument& document);

/// The fonts of a document, an array.
void WriteFonts(JsonWriter& json, const std::vector<Quillet::FontInfo>& fonts);

/// Begins the object of a page, with the members "index", "boxes", "rotate" and "size". Writes nothing if it throws.
void BeginPage(JsonWriter& json, const Quillet::Page& page, int index);

/// A page with its tree. Ids count from `firstId`, where the page's objects counted from 0. A page that is not whole
/// has `CutShort` among its problems afterwards.
LongText MakePageJson(const Quillet::Page& page, int index, const Quillet::GroupObject& root, Problems& problems,
                      long long firstId);

} // namespace Host
