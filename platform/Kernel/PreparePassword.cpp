#include <Kernel/PreparePassword.h>

#include <Kernel/Secret.h>

#include <memory>

#include <unicode/usprep.h>
#include <unicode/ustring.h>

namespace Kernel {

namespace {

struct ProfileCloser
{
    void operator()(UStringPrepProfile* profile) const { usprep_close(profile); }
};

using UnicodeText = std::u16string;

bool FitsAnInt(std::size_t size)
{
    // ICU counts in int32, and a preparation can make the text longer.
    return size < std::size_t{1} << 24;
}

std::optional<UnicodeText> ToUtf16(const std::string& utf8)
{
    UErrorCode error = U_ZERO_ERROR;
    UnicodeText text(utf8.size(), u'\0');
    int32_t length = 0;
    u_strFromUTF8(text.data(), static_cast<int32_t>(text.size()), &length, utf8.data(),
                  static_cast<int32_t>(utf8.size()), &error);
    if (U_FAILURE(error)) return std::nullopt;
    text.resize(static_cast<std::size_t>(length));
    return text;
}

std::string ToUtf8(const UnicodeText& text)
{
    UErrorCode error = U_ZERO_ERROR;
    std::string utf8(text.size() * 3, '\0');
    int32_t length = 0;
    u_strToUTF8(utf8.data(), static_cast<int32_t>(utf8.size()), &length, text.data(), static_cast<int32_t>(text.size()),
                &error);
    utf8.resize(U_SUCCESS(error) ? static_cast<std::size_t>(length) : 0);
    return utf8;
}

std::span<char> GetBytes(UnicodeText& text)
{
    return {reinterpret_cast<char*>(text.data()), text.size() * sizeof(char16_t)};
}

} // namespace

std::optional<std::string> PreparePassword(const std::string& utf8)
{
    if (!FitsAnInt(utf8.size())) return std::nullopt;
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<UStringPrepProfile, ProfileCloser> profile(
        usprep_openByType(USPREP_RFC4013_SASLPREP, &error));
    auto text = ToUtf16(utf8);
    if (U_FAILURE(error) || !text) return std::nullopt;

    // Compatibility composition makes at most 18 characters of one.
    UnicodeText prepared(text->size() * 18, u'\0');
    const int32_t length =
        usprep_prepare(profile.get(), text->data(), static_cast<int32_t>(text->size()), prepared.data(),
                       static_cast<int32_t>(prepared.size()), USPREP_ALLOW_UNASSIGNED, nullptr, &error);
    prepared.resize(U_SUCCESS(error) ? static_cast<std::size_t>(length) : 0);
    std::optional<std::string> result;
    if (U_SUCCESS(error)) result = ToUtf8(prepared);
    Wipe(GetBytes(*text));
    Wipe(GetBytes(prepared));
    return result;
}

} // namespace Kernel
