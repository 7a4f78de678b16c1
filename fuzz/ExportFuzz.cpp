/// A whole file: its first pages are built and written as JSON and as SVG.

#include "FuzzDocument.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace {

/// More show nothing that these do not.
constexpr int c_maxPages = 3;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Quillet::FuzzDocument document(std::string(reinterpret_cast<const char*>(data), size));
    if (!document.isOpen) return 0;
    const int count = std::min(document.document->GetPageCount(), c_maxPages);
    for (int index = 0; index < count; ++index)
        document.Export(index);
    return 0;
}
