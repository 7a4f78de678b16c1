#pragma once

#include <Kernel/Export.h>

#include <cstddef>
#include <string_view>
#include <vector>

namespace Kernel {

/// Letters of scripts that are written from right to left.
QUILLET_API bool IsRightToLeft(char32_t character) noexcept;

/// Of a line that holds its characters as they stand, from left to right: the places of these in the order in which
/// they are read and typed. Empty if that is the same because no letter is written from right to left. What the greater
/// part of the letters is decides which way the line as a whole runs (Unicode Standard Annex 9, turned round).
QUILLET_API std::vector<std::size_t> GetLogicalOrder(std::u32string_view visual);

} // namespace Kernel
