#pragma once

#include "content/Operator.h"

#include <memory>
#include <string>
#include <unordered_map>

namespace Quillet {

/// The handler of each operator keyword.
using OperatorTable = std::unordered_map<std::string, std::unique_ptr<Operator>>;

} // namespace Quillet
