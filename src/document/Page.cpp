#include <Quillet/Page.h>

#include "document/Dictionary.h"
#include "document/Resources.h"

#include <Quillet/PdfDocument.h>

namespace Quillet {

Kernel::Counted<const Page> Page::GetPage(int index) const
{
    return index == firstPage ? Kernel::Counted<const Page>(this) : nullptr;
}

Budget::Scope Page::OpenScope() const
{
    return {ref.document ? ref.document->GetBudget() : nullptr, Budget::Share::Page, GetAbortPointer()};
}

std::vector<Ref> Page::GetContents() const
{
    const Budget::Scope scope = OpenScope();
    Dictionary dictionary(ref, "Page", Error::PageTree);
    std::vector<Ref> contents;
    dictionary.GetRefVec("Contents", contents);
    return contents;
}

void Page::GetFonts(std::vector<Kernel::Font>& fonts, std::unordered_set<const Font*>& seen) const
{
    const Budget::Scope scope = OpenScope();
    if (const auto own = GetResources()) own->AddFonts(fonts, seen);
}

} // namespace Quillet
