#pragma once

#include "Problems.h"

#include <Quillet/FontInfo.h>

#include <string>
#include <vector>

namespace Quillet {
class GroupObject;
class Page;
class PdfDocument;
} // namespace Quillet

namespace Host {

/// The keys of "document", as a JSON object.
std::string MakeDocumentJson(const Quillet::PdfDocument& document);

/// The fonts of a document, as a JSON array.
std::string MakeFontsJson(const std::vector<Quillet::FontInfo>& fonts);

/// A page without its content: "index", "boxes", "rotate" and "size", without the closing brace.
std::string MakePageHeaderJson(const Quillet::Page& page, int index);

/// A page with its tree. Ids count from `firstId`, where the page's objects counted from 0.
std::string MakePageJson(const Quillet::Page& page, int index, const Quillet::GroupObject& root,
                         const Problems& problems, long long firstId);

} // namespace Host
