#pragma once

#include "Problems.h"
#include "exporters/LongText.h"

#include <Quillet/FontInfo.h>

#include <string>
#include <vector>

namespace Quillet {
class GroupObject;
class Page;
class PdfDocument;
} // namespace Quillet

namespace Host {

// What there is no more to pay for (`Quillet::Budget`) is left out of what these write; the text is JSON all the same.

/// Appends the keys of "document", as a JSON object.
void AppendDocumentJson(LongText& text, const Quillet::PdfDocument& document);

/// Appends the fonts of a document, as a JSON array.
void AppendFontsJson(LongText& text, const std::vector<Quillet::FontInfo>& fonts);

/// A page without its content: "index", "boxes", "rotate" and "size", without the closing brace.
std::string MakePageHeaderJson(const Quillet::Page& page, int index);

/// A page with its tree. Ids count from `firstId`, where the page's objects counted from 0. A page that is not whole
/// has `CutShort` among its problems afterwards.
LongText MakePageJson(const Quillet::Page& page, int index, const Quillet::GroupObject& root, Problems& problems,
                      long long firstId);

} // namespace Host
