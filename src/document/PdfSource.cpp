#include "document/PdfSource.h"

namespace Quillet {

void PdfSource::OnError(Error::Type type) const
{
    if (!handler) return ErrorForwarder::OnError(type);
    handler->OnErrorAt(type, GetErrorPlace());
}

const std::string& PdfSource::GetDocName() const
{
    static const std::string c_unknown = "Unknown";
    return c_unknown;
}

void PdfSource::Open(const std::string&) {}

void PdfSource::SetBaseOffset(unsigned long long) {}

} // namespace Quillet
