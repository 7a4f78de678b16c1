#pragma once

#include <string>
#include <vector>

namespace Quillet {
class PdfDocument;
} // namespace Quillet

namespace Host {

/// What whoever opened the document may do with it, in words.
std::vector<std::string> GetPermissionNames(const Quillet::PdfDocument& document);

} // namespace Host
