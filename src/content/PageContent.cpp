// What is run and drawn of a page.

#include "content/StreamInterpreter.h"
#include "document/DocumentState.h"
#include "filters/MultiStream.h"

#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>

namespace Quillet {

Kernel::Counted<SequentialSource> Page::GetContentsStream() const
{
    return MultiStream::Make(GetErrorHandler(), GetContents());
}

Kernel::Counted<GroupObject> Page::BuildObjects() const
{
    const Budget::Scope scope = OpenScope();
    const RunningContent running(*this); // Opening it reads the first bytes ahead.
    StreamInterpreter interpreter(Kernel::NonCounted<const Page>(this));
    Kernel::Counted<GroupObject> root = interpreter.Interpret();
    Check(!scope.WasCut(), Error::CutShort);
    return root;
}

} // namespace Quillet
