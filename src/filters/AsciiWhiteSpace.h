#pragma once

namespace Quillet {

/// The bytes that text encodings of binary data skip (ISO 32000-2, 7.2.3).
inline bool IsAsciiWhiteSpace(char byte)
{
    return byte == '\0' || byte == '\t' || byte == '\n' || byte == '\f' || byte == '\r' || byte == ' ';
}

} // namespace Quillet
