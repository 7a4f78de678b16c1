/// A whole file: opening it and asking for all that can be asked without building a page.

#include "support/TestDocument.h"

#include "document/Resources.h"

#include <Quillet/Page.h>

#include <algorithm>
#include <cstdint>
#include <string>

namespace {

using namespace Quillet;

/// A page count is only a number in the file.
constexpr int c_maxPages = 20;

void AskDocument(const PdfDocument& document)
{
    (void)document.GetDocName();
    (void)document.GetVersionString();
    (void)document.GetXVersion();
    for (const char* key : {"Title", "Author", "Subject", "Creator", "Producer", "CreationDate", "Trapped"})
        (void)document.GetInfo(key);
    (void)document.GetKeywords();
    (void)document.GetXmpMetadata();
    (void)document.HasOwnerPermissions();
    (void)document.HasUserPermissions();
    (void)document.IsRestricted();
}

void AskPage(const PdfDocument& document, int index)
{
    const auto page = document.GetPage(index);
    if (!page) return;
    for (auto box : {&PageBase::GetMediaBox, &PageBase::GetCropBox, &PageBase::GetBleedBox, &PageBase::GetTrimBox,
                     &PageBase::GetArtBox}) {
        (void)PageBase::ApplyRotate(((*page).*box)(), page->GetRotate());
    }
    (void)page->GetClipBox();
    (void)page->GetResources();
    (void)page->GetResourcesRef();
    (void)page->GetContents();
    (void)document.GetPageIndex(Kernel::NonCounted<const Page>(page));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    TestDocument document(std::string(reinterpret_cast<const char*>(data), size));
    if (!document.isOpen) return 0;
    AskDocument(*document.document);
    const int count = document->GetPageCount();
    for (int i = 0; i <= std::min(count, c_maxPages); ++i) {
        // The last one is the one behind the others, or, in a long document, its last page.
        const int index = i == c_maxPages ? count - 1 : i;
        try {
            AskPage(*document.document, index);
        } catch (Error::Type) {
        }
    }
    document->SetPassword("password");
    document->Close();
    return 0;
}
