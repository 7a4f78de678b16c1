#include "document/PdfSource.h"

namespace Quillet {

const std::string& PdfSource::GetDocName() const
{
    static const std::string c_unknown = "Unknown";
    return c_unknown;
}

void PdfSource::Open(const std::string&) {}

void PdfSource::SetBaseOffset(unsigned long long) {}

} // namespace Quillet
