#pragma once

#include <Kernel/Export.h>

#include <cstddef>
#include <string_view>
#include <vector>

namespace Kernel {

/// Letters, and marks, of scripts that are written from right to left.
QUILLET_API bool IsRightToLeft(char32_t character) noexcept;
/// Whether a text as a whole runs from right to left: not fewer of its letters do than others.
QUILLET_API bool IsRightToLeft(std::u32string_view text) noexcept;

/// A character of a line, as it is read.
struct ReadCharacter
{
    /// Its place in the line as it stands.
    std::size_t place = 0;
    /// It stands in text that runs from right to left, where a bracket that opens looks like one that closes.
    bool isMirrored = false;

    char32_t GetFrom(std::u32string_view visual) const;
};

/// The bracket, or other sign, that looks like this one in a mirror; the character itself for most.
QUILLET_API char32_t GetMirrored(char32_t character) noexcept;

/// Of a line that holds its characters as they stand, from left to right: these in the order in which they are read and
/// typed. Empty if that is the same because no letter is written from right to left. Laid out anew (Unicode Standard
/// Annex 9), a line that runs as `IsRightToLeft` says stands as before, but for numbers beside marks.
QUILLET_API std::vector<ReadCharacter> GetLogicalOrder(std::u32string_view visual);

inline char32_t ReadCharacter::GetFrom(std::u32string_view visual) const
{
    return isMirrored ? GetMirrored(visual[place]) : visual[place];
}

} // namespace Kernel
