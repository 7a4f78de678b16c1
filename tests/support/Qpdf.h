#pragma once

#include <string>
#include <vector>

namespace Quillet {

/// What qpdf makes of a file with the given options. Throws std::runtime_error if it makes nothing.
std::string RunQpdf(const std::string& file, std::vector<std::string> options);

} // namespace Quillet
