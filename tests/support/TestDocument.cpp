#include "support/TestDocument.h"

#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>

namespace Quillet {

TestDocument::TestDocument(std::string file) : bytes(std::move(file)), document(Kernel::MakeCounted<PdfDocument>())
{
    document->SetErrorHandler(&errors);
    isOpen = document->OpenMemory(bytes.data(), bytes.size());
}

TestDocument::~TestDocument() = default;

Kernel::Counted<GroupObject> TestDocument::Build(int page)
{
    try {
        return document->GetPage(page)->BuildObjects();
    } catch (Error::Type) {
        return nullptr;
    }
}

} // namespace Quillet
