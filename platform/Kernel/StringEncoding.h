#pragma once

#include <Kernel/Counted.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace Kernel {

/// A way to write text as bytes. Immutable: one encoding may be used from any number of threads.
class QUILLET_API StringEncoding : public Countable
{
public:
    static constexpr std::size_t c_noLimit = std::string::npos;

    /// The encoding of a Windows or IBM code page number, 1252 for instance; null if the number is not known. Number 0
    /// is the encoding that the system uses by default. Encodings are made once and shared.
    static Counted<StringEncoding> Make(int codePage);

    /// The default encoding for a language; language 0 stands for the system's. Other languages are not told apart, so
    /// that the second number matters for code page 0 only.
    static Counted<StringEncoding> Make(int codePage, int languageId);

    /// PDFDocEncoding (ISO 32000-2, Annex D.3).
    static Counted<StringEncoding> MakePdfDocEncoding();

    /// The text as UTF-8. Never fails: bytes without a meaning become U+FFFD.
    virtual std::string ToUnicode(std::string_view bytes) const = 0;

    /// The text in this encoding, at most `maxBytes` long and cut between characters. Characters that the encoding
    /// lacks are dropped; no near relative is put in their place.
    virtual std::string FromUnicode(std::string_view utf8, std::size_t maxBytes = c_noLimit) const = 0;
};

} // namespace Kernel
