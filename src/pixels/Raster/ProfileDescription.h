#pragma once

#include <string>

namespace Raster {

/// The English description of a Little CMS profile, in UTF-8; empty if it has none.
std::string GetProfileDescription(void* profile);

} // namespace Raster
