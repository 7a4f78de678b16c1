#pragma once

#include <Kernel/Export.h>

#include <string>
#include <typeinfo>

namespace Kernel {

/// The name of a class without the namespaces and classes around it: "OpSave" for `Quillet::OpSave`.
///
/// Template arguments stay, with their own namespaces: `Quillet::LUT<Quillet::Invert, false>` gives
/// "LUT<Quillet::Invert, false>". For diagnostics; other compilers may write arguments differently.
QUILLET_API std::string DemangleTypeName(const std::type_info& type);

} // namespace Kernel
