#include "filters/Filter.h"

#include "filters/DecodeParams.h"

namespace Quillet {

void Filter::SetDecodeParams(Kernel::Counted<const DecodeParams>) {}

} // namespace Quillet
