#include <Kernel/LogicalOrder.h>

#include <Kernel/CharTraits.h>

#include <algorithm>
#include <memory>
#include <string>

#include <unicode/ubidi.h>
#include <unicode/uchar.h>

namespace Kernel {

namespace {

/// The first letter of a script that is written from right to left, in the order of codes.
constexpr char32_t c_firstRightToLeft = 0x0590;

UCharDirection GetDirection(char32_t character) noexcept
{
    return character <= CharTraits::c_lastCodePoint ? u_charDirection(static_cast<UChar32>(character))
                                                    : U_OTHER_NEUTRAL;
}

/// A character of the same direction that takes one unit.
char16_t GetStandIn(char32_t character) noexcept
{
    if (character <= U'\uFFFF') return static_cast<char16_t>(character);
    switch (GetDirection(character)) {
    case U_RIGHT_TO_LEFT:
        return u'\u05D0';
    case U_RIGHT_TO_LEFT_ARABIC:
        return u'\u0627';
    case U_LEFT_TO_RIGHT:
        return u'a';
    case U_EUROPEAN_NUMBER:
        return u'0';
    default:
        return u'\uFFFC';
    }
}

struct BidiCloser
{
    void operator()(UBiDi* bidi) const noexcept { ubidi_close(bidi); }
};

} // namespace

bool IsRightToLeft(char32_t character) noexcept
{
    if (character < c_firstRightToLeft) return false;
    const UCharDirection direction = GetDirection(character);
    return direction == U_RIGHT_TO_LEFT || direction == U_RIGHT_TO_LEFT_ARABIC;
}

std::vector<std::size_t> GetLogicalOrder(std::u32string_view visual)
{
    const auto count = std::ranges::count_if(visual, IsRightToLeft);
    if (count == 0) return {};
    const auto against =
        std::ranges::count_if(visual, [](char32_t character) { return GetDirection(character) == U_LEFT_TO_RIGHT; });

    // The order is one of directions alone, so that a unit can stand for any character.
    std::u16string text;
    text.reserve(visual.size());
    for (const char32_t character : visual)
        text += GetStandIn(character);
    UErrorCode status = U_ZERO_ERROR;
    const auto length = static_cast<int32_t>(text.size());
    const std::unique_ptr<UBiDi, BidiCloser> bidi(ubidi_openSized(length, 0, &status));
    if (U_FAILURE(status)) return {};
    ubidi_setReorderingMode(bidi.get(), UBIDI_REORDER_INVERSE_LIKE_DIRECT);
    ubidi_setPara(bidi.get(), text.data(), length, count >= against ? UBIDI_RTL : UBIDI_LTR, nullptr, &status);
    std::vector<int32_t> order(visual.size());
    ubidi_getVisualMap(bidi.get(), order.data(), &status);
    if (U_FAILURE(status)) return {};
    return {order.begin(), order.end()};
}

} // namespace Kernel
