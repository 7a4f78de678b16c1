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
    case U_ARABIC_NUMBER:
        return u'\u0660';
    case U_DIR_NON_SPACING_MARK:
        return u'\u0300';
    default:
        return u'\uFFFC';
    }
}

struct BidiCloser
{
    void operator()(UBiDi* bidi) const noexcept { ubidi_close(bidi); }
};

struct Layout
{
    /// The places of the units in the order that ICU gives them; empty if it fails.
    std::vector<int32_t> order;
    /// Of the units; odd for those that run from right to left.
    std::vector<UBiDiLevel> levels;
};

Layout Reorder(const std::u16string& text, UBiDiLevel level, UBiDiReorderingMode mode)
{
    UErrorCode status = U_ZERO_ERROR;
    const auto length = static_cast<int32_t>(text.size());
    const std::unique_ptr<UBiDi, BidiCloser> bidi(ubidi_openSized(length, 0, &status));
    if (U_FAILURE(status)) return {};
    ubidi_setReorderingMode(bidi.get(), mode);
    ubidi_setPara(bidi.get(), text.data(), length, level, nullptr, &status);
    Layout layout{std::vector<int32_t>(text.size()), {}};
    ubidi_getVisualMap(bidi.get(), layout.order.data(), &status);
    const UBiDiLevel* const levels = ubidi_getLevels(bidi.get(), &status);
    if (U_FAILURE(status)) return {};
    layout.levels.assign(levels, levels + length);
    return layout;
}

} // namespace

bool IsRightToLeft(char32_t character) noexcept
{
    if (character < c_firstRightToLeft) return false;
    const UCharDirection direction = GetDirection(character);
    return direction == U_RIGHT_TO_LEFT || direction == U_RIGHT_TO_LEFT_ARABIC;
}

bool IsRightToLeft(std::u32string_view text) noexcept
{
    const auto count = std::ranges::count_if(text, [](char32_t character) { return IsRightToLeft(character); });
    if (count == 0) return false;
    const auto against =
        std::ranges::count_if(text, [](char32_t character) { return GetDirection(character) == U_LEFT_TO_RIGHT; });
    return count >= against;
}

char32_t GetMirrored(char32_t character) noexcept
{
    return character <= CharTraits::c_lastCodePoint
               ? static_cast<char32_t>(u_charMirror(static_cast<UChar32>(character)))
               : character;
}

std::vector<ReadCharacter> GetLogicalOrder(std::u32string_view visual)
{
    if (std::ranges::none_of(visual, [](char32_t character) { return IsRightToLeft(character); })) return {};
    const UBiDiLevel level = IsRightToLeft(visual) ? 1 : 0;
    // The order is one of directions alone, so that a unit can stand for any character.
    std::u16string text;
    text.reserve(visual.size());
    for (const char32_t character : visual)
        text += GetStandIn(character);
    std::vector<ReadCharacter> best;
    // They differ in numbers; the one that gives the line again when it is laid out is right.
    for (const UBiDiReorderingMode mode : {UBIDI_REORDER_INVERSE_NUMBERS_AS_L, UBIDI_REORDER_INVERSE_LIKE_DIRECT}) {
        const Layout layout = Reorder(text, level, mode);
        if (layout.order.empty()) return {};
        std::u16string logical;
        for (const int32_t place : layout.order)
            logical += text[static_cast<std::size_t>(place)];
        const Layout back = Reorder(logical, level, UBIDI_REORDER_DEFAULT);
        if (back.order.empty()) return {};
        const bool isSame = std::ranges::equal(
            back.order, text, {}, [&logical](int32_t place) { return logical[static_cast<std::size_t>(place)]; });
        if (!isSame && !best.empty()) break;
        best.clear();
        for (std::size_t i = 0; i < logical.size(); ++i)
            best.push_back({static_cast<std::size_t>(layout.order[i]), back.levels[i] % 2 == 1});
        if (isSame) break;
    }
    return best;
}

} // namespace Kernel
