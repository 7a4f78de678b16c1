#pragma once

#include "colour/PsObject.h"

#include <Kernel/Export.h>

namespace Quillet {

/// The code of an operator by its keyword; `PsUnknown` for any other text.
QUILLET_API PsCode GetPsOperator(const char* name);

} // namespace Quillet
