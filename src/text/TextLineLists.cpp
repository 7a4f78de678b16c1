#include <Quillet/TextLineObject.h>

#include "text/ListAtt.h"

namespace Quillet {

const Kernel::Counted<ListAtt>& TextLineObject::GetListCandidate() const
{
    if (!listCandidate) listCandidate = Kernel::MakeCounted<ListAtt>(chars.begin(), chars.end());
    return listCandidate;
}

void TextLineObject::SetIsListDone(bool isDone)
{
    GetListCandidate()->isDone = isDone;
}

void TextLineObject::SetNotList()
{
    GetListCandidate()->type = Story::ListType::None;
}

bool TextLineObject::IsCompatibleList(const ListAtt& previous) const
{
    return GetListCandidate()->IsCompatible(previous);
}

} // namespace Quillet
