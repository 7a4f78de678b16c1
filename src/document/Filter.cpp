#include "document/Filter.h"

#include "document/DecodeParams.h"
#include "document/Limits.h"

#include <Quillet/Budget.h>

#include <algorithm>

namespace Quillet {

int Filter::Read(char* buf, int size)
{
    if (!Budget::Spend(Limits::c_decodeUnits)) return 0;
    const int count = Decode(buf, size);
    Budget::Spend(static_cast<unsigned>(std::max(count, 0)));
    return count;
}

void Filter::SetDecodeParams(Kernel::Counted<const DecodeParams>) {}

} // namespace Quillet
