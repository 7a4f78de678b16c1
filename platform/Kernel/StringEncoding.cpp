#include <Kernel/StringEncoding.h>

#include <Kernel/CharTraits.h>

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/utf16.h>

namespace Kernel {

namespace {

/// The character of each byte; U+FFFD where a byte has none.
using ByteTable = std::array<char32_t, 256>;

struct ByteOfCharacter
{
    char32_t codePoint;
    char byte;
};

/// An encoding in which each byte is a character on its own: two tables serve it, without a converter to open.
class SingleByteEncoding : public StringEncoding
{
public:
    /// `bytes` in any order; of several entries for one character the first counts.
    SingleByteEncoding(const ByteTable& characters, std::vector<ByteOfCharacter> bytes)
        : table(characters), reverse(std::move(bytes))
    {
        std::stable_sort(reverse.begin(), reverse.end(), IsBefore);
    }

    std::string ToUnicode(std::string_view bytes) const override
    {
        std::string result;
        result.reserve(bytes.size());
        for (char byte : bytes)
            CharTraits::AppendCodePoint(result, table[static_cast<unsigned char>(byte)]);
        return result;
    }

    std::string FromUnicode(std::string_view utf8, std::size_t maxBytes) const override
    {
        std::string result;
        std::size_t position = 0;
        while (position < utf8.size() && result.size() < maxBytes) {
            const char32_t codePoint = CharTraits::DecodeCodePoint(utf8, position);
            const auto found =
                std::lower_bound(reverse.begin(), reverse.end(), ByteOfCharacter{codePoint, 0}, IsBefore);
            if (found != reverse.end() && found->codePoint == codePoint) result += found->byte;
        }
        return result;
    }

private:
    static bool IsBefore(const ByteOfCharacter& a, const ByteOfCharacter& b) { return a.codePoint < b.codePoint; }

    ByteTable table;
    std::vector<ByteOfCharacter> reverse;
};

struct ConverterCloser
{
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, ConverterCloser>;

/// ICU's own substitute is U+001A for some encodings, which nobody would take for a fault.
void SubstituteReplacement(const void*, UConverterToUnicodeArgs* arguments, const char*, int32_t,
                           UConverterCallbackReason reason, UErrorCode* error)
{
    if (reason > UCNV_IRREGULAR) return;
    *error = U_ZERO_ERROR;
    const UChar replacement = CharTraits::c_replacement;
    ucnv_cbToUWriteUChars(arguments, &replacement, 1, 0, error);
}

/// Null if ICU does not know the name.
Converter OpenConverter(const std::string& name)
{
    UErrorCode error = U_ZERO_ERROR;
    Converter converter(ucnv_open(name.c_str(), &error));
    if (U_FAILURE(error)) return nullptr;
    ucnv_setToUCallBack(converter.get(), SubstituteReplacement, nullptr, nullptr, nullptr, &error);
    ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_SKIP, nullptr, nullptr, nullptr, &error);
    ucnv_setFallback(converter.get(), false);
    return U_SUCCESS(error) ? std::move(converter) : nullptr;
}

/// All that `bytes` stand for. Converts in pieces, so that no length is too great for ICU.
std::u16string ConvertToUtf16(UConverter* converter, std::string_view bytes)
{
    std::u16string result;
    std::array<UChar, 1024> piece;
    const char* source = bytes.data();
    const char* sourceEnd = source + bytes.size();
    UErrorCode error = U_BUFFER_OVERFLOW_ERROR;
    while (error == U_BUFFER_OVERFLOW_ERROR) {
        error = U_ZERO_ERROR;
        UChar* target = piece.data();
        ucnv_toUnicode(converter, &target, piece.data() + piece.size(), &source, sourceEnd, nullptr, true, &error);
        result.append(piece.data(), target);
    }
    return result;
}

std::string ConvertFromUtf16(UConverter* converter, std::u16string_view text)
{
    std::string result;
    std::array<char, 1024> piece;
    const UChar* source = text.data();
    const UChar* sourceEnd = source + text.size();
    UErrorCode error = U_BUFFER_OVERFLOW_ERROR;
    while (error == U_BUFFER_OVERFLOW_ERROR) {
        error = U_ZERO_ERROR;
        char* target = piece.data();
        ucnv_fromUnicode(converter, &target, piece.data() + piece.size(), &source, sourceEnd, nullptr, true, &error);
        result.append(piece.data(), target);
    }
    return result;
}

std::u16string Utf8ToUtf16(std::string_view utf8)
{
    // No character takes more units than bytes.
    std::u16string result(utf8.size(), u'\0');
    std::size_t length = 0;
    for (std::size_t position = 0; position < utf8.size();) {
        const char32_t codePoint = CharTraits::DecodeCodePoint(utf8, position);
        U16_APPEND_UNSAFE(result, length, codePoint);
    }
    result.resize(length);
    return result;
}

/// Any other encoding that ICU knows. A converter has state and serves one thread, so each call opens its own; ICU
/// keeps the tables.
class ConverterEncoding : public StringEncoding
{
public:
    explicit ConverterEncoding(std::string converterName) : name(std::move(converterName)), isAsciiKept(KeepsAscii()) {}

    std::string ToUnicode(std::string_view bytes) const override
    {
        if (isAsciiKept && IsAscii(bytes)) return std::string(bytes);
        const Converter converter = OpenConverter(name);
        if (!converter) return {};
        return CharTraits::ToUtf8(ConvertToUtf16(converter.get(), bytes));
    }

    std::string FromUnicode(std::string_view utf8, std::size_t maxBytes) const override
    {
        if (isAsciiKept && IsAscii(utf8)) return std::string(utf8.substr(0, maxBytes));
        const Converter converter = OpenConverter(name);
        if (!converter) return {};
        const std::u16string text = Utf8ToUtf16(utf8);
        std::string bytes = ConvertFromUtf16(converter.get(), text);
        if (bytes.size() <= maxBytes) return bytes;
        return ConvertFromUtf16(converter.get(), GetFittingPrefix(converter.get(), text, maxBytes));
    }

private:
    static bool IsAscii(std::string_view text)
    {
        return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    }

    /// False for encodings that give ASCII bytes another meaning, be it behind an escape character only.
    bool KeepsAscii() const
    {
        const Converter converter = OpenConverter(name);
        if (!converter) return false;
        for (char16_t c = 0; c < 0x80; ++c) {
            const char byte = static_cast<char>(c);
            if (ConvertToUtf16(converter.get(), {&byte, 1}) != std::u16string_view(&c, 1)) return false;
        }
        return true;
    }

    /// The longest prefix of whole characters whose bytes, with those that end a shifted state, fit.
    static std::u16string_view GetFittingPrefix(UConverter* converter, std::u16string_view text, std::size_t maxBytes)
    {
        std::size_t fitting = 0;
        std::size_t tooLong = text.size();
        while (tooLong - fitting > 1) {
            const std::size_t middle = fitting + (tooLong - fitting) / 2;
            const bool fits = ConvertFromUtf16(converter, text.substr(0, middle)).size() <= maxBytes;
            (fits ? fitting : tooLong) = middle;
        }
        const bool splitsPair = fitting > 0 && U16_IS_LEAD(text[fitting - 1]);
        return text.substr(0, splitsPair ? fitting - 1 : fitting);
    }

    std::string name;
    bool isAsciiKept;
};

/// The encoding of a converter that makes one character of each byte; null for others.
Counted<StringEncoding> TryMakeSingleByte(UConverter* converter)
{
    if (ucnv_getMaxCharSize(converter) != 1) return nullptr;
    ByteTable table;
    std::vector<ByteOfCharacter> reverse;
    for (std::size_t i = 0; i < table.size(); ++i) {
        const char byte = static_cast<char>(i);
        const std::u16string text = ConvertToUtf16(converter, {&byte, 1});
        if (text.size() != 1) return nullptr;
        table[i] = text[0];
        const std::string bytes = ConvertFromUtf16(converter, text);
        if (table[i] != CharTraits::c_replacement && bytes.size() == 1) reverse.push_back({table[i], bytes[0]});
    }
    return MakeCounted<SingleByteEncoding>(table, std::move(reverse));
}

Counted<StringEncoding> MakeByName(const std::string& name)
{
    const Converter converter = OpenConverter(name);
    if (!converter) return nullptr;
    if (Counted<StringEncoding> simple = TryMakeSingleByte(converter.get())) return simple;
    return MakeCounted<ConverterEncoding>(name);
}

struct CodePageName
{
    int codePage;
    const char* name;
};

/// The code pages whose ICU names do not hold the number.
constexpr CodePageName c_codePageNames[] = {
    {1200, "UTF-16LE"},     {1201, "UTF-16BE"},     {10000, "macintosh"},   {12000, "UTF-32LE"},
    {12001, "UTF-32BE"},    {20127, "US-ASCII"},    {20866, "KOI8-R"},      {20932, "EUC-JP"},
    {21866, "KOI8-U"},      {28591, "ISO-8859-1"},  {28592, "ISO-8859-2"},  {28593, "ISO-8859-3"},
    {28594, "ISO-8859-4"},  {28595, "ISO-8859-5"},  {28596, "ISO-8859-6"},  {28597, "ISO-8859-7"},
    {28598, "ISO-8859-8"},  {28599, "ISO-8859-9"},  {28603, "ISO-8859-13"}, {28605, "ISO-8859-15"},
    {50220, "ISO-2022-JP"}, {50225, "ISO-2022-KR"}, {51932, "EUC-JP"},      {51936, "GB2312"},
    {51949, "EUC-KR"},      {52936, "HZ-GB-2312"},  {54936, "GB18030"},     {65000, "UTF-7"},
    {65001, "UTF-8"},
};

Counted<StringEncoding> MakeByNumber(int codePage)
{
    if (codePage == 0) return MakeByName(ucnv_getDefaultName());
    // ICU overlooks punctuation in names: a minus sign would pass unseen.
    if (codePage < 0) return nullptr;
    for (const CodePageName& row : c_codePageNames) {
        if (row.codePage == codePage) return MakeByName(row.name);
    }
    const std::string number = std::to_string(codePage);
    if (Counted<StringEncoding> encoding = MakeByName("windows-" + number)) return encoding;
    return MakeByName("ibm-" + number);
}

/// A run of PDFDocEncoding where it is not Latin-1.
struct PdfDocRow
{
    unsigned char first;
    std::u32string_view characters;
};

constexpr PdfDocRow c_pdfDocRows[] = {
    {0x18, U"\u02D8\u02C7\u02C6\u02D9\u02DD\u02DB\u02DA\u02DC"},
    {0x7F, U"\uFFFD"},
    {0x80, U"\u2022\u2020\u2021\u2026\u2014\u2013\u0192\u2044\u2039\u203A\u2212\u2030\u201E\u201C\u201D\u2018"},
    {0x90, U"\u2019\u201A\u2122\uFB01\uFB02\u0141\u0152\u0160\u0178\u017D\u0131\u0142\u0153\u0161\u017E\uFFFD"},
    {0xA0, U"\u20AC"},
    {0xAD, U"\uFFFD"},
};

Counted<StringEncoding> MakePdfDoc()
{
    ByteTable table;
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = static_cast<char32_t>(i);
    for (const PdfDocRow& row : c_pdfDocRows) {
        std::copy(row.characters.begin(), row.characters.end(), table.begin() + row.first);
    }
    std::vector<ByteOfCharacter> reverse;
    for (std::size_t i = 0; i < table.size(); ++i) {
        if (table[i] != CharTraits::c_replacement) reverse.push_back({table[i], static_cast<char>(i)});
    }
    return MakeCounted<SingleByteEncoding>(table, std::move(reverse));
}

} // namespace

Counted<StringEncoding> StringEncoding::Make(int codePage)
{
    static std::mutex mutex;
    static auto& known = *new std::map<int, Counted<StringEncoding>>;
    std::lock_guard lock(mutex);
    const auto found = known.find(codePage);
    if (found != known.end()) return found->second;
    Counted<StringEncoding> encoding = MakeByNumber(codePage);
    // Unknown numbers are not kept: there is no end of them.
    if (encoding) known.emplace(codePage, encoding);
    return encoding;
}

Counted<StringEncoding> StringEncoding::Make(int codePage, int languageId)
{
    if (codePage == 0 && languageId != 0) return nullptr;
    return Make(codePage);
}

Counted<StringEncoding> StringEncoding::MakePdfDocEncoding()
{
    static auto& encoding = *new Counted<StringEncoding>(MakePdfDoc());
    return encoding;
}

} // namespace Kernel
