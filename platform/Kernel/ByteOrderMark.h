#pragma once

#include <Kernel/Export.h>

#include <cstddef>
#include <string>

namespace Kernel {

/// The byte order marks by which a PDF text string names its encoding (ISO 32000-2, 7.9.2.2), and the little-endian one
/// that some producers write although the standard has no place for it.
enum class ByteOrderMark { None, Utf8, Utf16BigEndian, Utf16LittleEndian };

/// The mark at the start of `bytes`.
QUILLET_API ByteOrderMark GetByteOrderMark(const char* bytes, std::size_t size) noexcept;

/// `bytes` as UTF-8, without the leading `mark`, which is what `GetByteOrderMark` found there; with `None` they are
/// taken as UTF-8 from the first byte on. Broken sequences, lone surrogates and a cut last unit become U+FFFD each.
QUILLET_API std::string ConvertToUtf8(const char* bytes, std::size_t size, ByteOrderMark mark);

} // namespace Kernel
