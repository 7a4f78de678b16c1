#include "document/DocumentState.h"
#include "document/Parser.h"

#include <Quillet/Page.h>
#include <Quillet/PdfDocument.h>

namespace Quillet {

RunningContent::RunningContent(const Page& page, const Parser* contentParser)
    : state(page.ref.document ? &page.ref.document->GetState() : nullptr), outer(state ? state->running : nullptr),
      parser(contentParser), pageIndex(page.firstPage)
{
    if (state) state->running = this;
}

RunningContent::~RunningContent()
{
    if (state) state->running = outer;
}

ErrorPlace RunningContent::GetErrorPlace() const
{
    ErrorPlace place = parser ? parser->GetErrorPlace() : ErrorPlace();
    place.page = pageIndex;
    return place;
}

} // namespace Quillet
