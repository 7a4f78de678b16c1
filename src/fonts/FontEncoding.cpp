#include "fonts/FontEncoding.h"

#include "document/Limits.h"

#include <Quillet/Budget.h>

#include <algorithm>
#include <utility>

namespace Quillet {

namespace {

using CodeSpaceRange = FontEncoding::CodeSpaceRange;

/// Whether a code of the range may start with the `count` bytes of `value`.
bool HasStart(const CodeSpaceRange& range, unsigned value, int count)
{
    if (count > range.byteCount) return false;
    const int shift = 8 * std::min(range.byteCount - count, 4);
    return shift >= 32 ? value == 0 : value >= range.low >> shift && value <= range.high >> shift;
}

/// Takes bytes off a text at `pos`, as a number that starts anew with each attempt.
class CodeReader
{
public:
    CodeReader(const std::vector<CodeSpaceRange>& codeSpaceRanges, const std::vector<char>& bytes, int& place)
        : ranges(codeSpaceRanges), text(bytes), pos(place), size(static_cast<int>(bytes.size())),
          // Without a single byte a code would never end.
          maxBytes(ranges.empty() ? 1 : std::max(ranges.back().byteCount, 1))
    {}

    /// Takes a code, or as many bytes as the longest has. The range of the code; null for none.
    const CodeSpaceRange* TakeCode()
    {
        value = 0;
        for (int taken = 1; taken <= maxBytes && TakePaidByte(); ++taken) {
            for (const CodeSpaceRange& range : ranges) {
                if (range.byteCount == taken && value >= range.low && value <= range.high) return &range;
            }
        }
        return nullptr;
    }

    /// Takes as many bytes as the longest code has. The longest range that starts like them, or else the first of all.
    const CodeSpaceRange* TakeLikeCode()
    {
        const CodeSpaceRange* best = nullptr;
        value = 0;
        for (int taken = 1; taken <= maxBytes && TakePaidByte(); ++taken) {
            for (const CodeSpaceRange& range : ranges) {
                if (HasStart(range, value, taken) && (!best || range.byteCount > best->byteCount)) best = &range;
            }
        }
        return best || ranges.empty() ? best : &ranges.front();
    }

    void TakeBytes(int count)
    {
        value = 0;
        for (int taken = 0; taken < count && TakeByte(); ++taken) {
        }
    }

    unsigned value = 0;

private:
    bool TakeByte()
    {
        if (pos >= size) return false;
        value = value << 8 | static_cast<unsigned char>(text[static_cast<std::size_t>(pos++)]);
        return true;
    }

    /// Goes to the end of the text on a page that has used up its work.
    bool TakePaidByte()
    {
        if (pos < size && !Budget::Spend(Limits::c_operatorUnits + ranges.size())) pos = size;
        return TakeByte();
    }

    const std::vector<CodeSpaceRange>& ranges;
    const std::vector<char>& text;
    int& pos;
    const int size;
    const int maxBytes;
};

} // namespace

void FontEncoding::AddCodeSpaceRange(int byteCount, int fontIndex, unsigned low, unsigned high)
{
    if (std::exchange(isCodeSpaceAssumed, false)) codeSpaceRanges.clear();
    if (codeSpaceRanges.size() < Limits::c_maxCodeSpaceRanges)
        codeSpaceRanges.push_back({low, high, byteCount, fontIndex});
}

void FontEncoding::AddMapRange(int first, int last, const CodeSequence& sequence)
{
    if (!Check(first >= 0, Error::General)) first = 0;
    if (last < first || !Budget::Spend(Limits::c_rangeUnits)) return;
    mapRanges.Set(first, last, sequence);
}

void FontEncoding::AddBase(const FontEncoding& base)
{
    const std::size_t bytes = sizeof base + base.codeSpaceRanges.size() * sizeof(CodeSpaceRange);
    if (!Budget::Spend(Limits::c_rangeUnits * base.mapRanges.size() + bytes)) return;
    if (registry.empty() && ordering.empty()) {
        registry = base.registry;
        ordering = base.ordering;
    }
    const auto own = std::exchange(mapRanges, base.mapRanges);
    for (const auto& [first, range] : own)
        AddMapRange(range.first, range.last, range.value);
    if (base.isCodeSpaceAssumed) return;
    for (const CodeSpaceRange& range : base.codeSpaceRanges)
        AddCodeSpaceRange(range.byteCount, range.fontIndex, range.low, range.high);
}

void FontEncoding::AddUndefinedMaps(int first, int last, char32_t character)
{
    for (int code = first; code <= last; ++code) {
        if (!ContainsMappingFor(code)) AddMap(code, character);
    }
}

void FontEncoding::OnComplete()
{
    if (codeSpaceRanges.empty()) {
        AddCodeSpaceRange(1, 0, 0, 0);
        isCodeSpaceAssumed = true;
    }
    std::ranges::stable_sort(codeSpaceRanges, {}, &CodeSpaceRange::byteCount);
    for (int code = 0; code < c_lookupSize; ++code)
        lookup[static_cast<std::size_t>(code)] = GetMappedSequenceSlow(code);
}

CodeSequence FontEncoding::GetMappedSequenceSlow(int code) const
{
    const auto* range = mapRanges.Find(code);
    return range ? range->At(code) : CodeSequence(0);
}

std::size_t FontEncoding::GetDispensableBytes() const
{
    return sizeof *this + mapRanges.GetBytes() + codeSpaceRanges.size() * sizeof(CodeSpaceRange);
}

bool FontEncoding::ContainsMappingFor(int code) const
{
    return mapRanges.Find(code) != nullptr;
}

bool FontEncoding::AdvanceCharCode(int& fontIndex, int& code, int& pos, const std::vector<char>& text) const
{
    const int start = pos;
    CodeReader reader(codeSpaceRanges, text, pos);
    const CodeSpaceRange* range = reader.TakeCode();
    const bool isCode = range != nullptr;
    if (!isCode) {
        range = reader.TakeLikeCode();
        reader.TakeBytes(range ? range->byteCount : 0);
    }
    fontIndex = range ? range->fontIndex : 0;
    code = static_cast<int>(reader.value);
    if (pos == start) ++pos;
    return isCode;
}

int FontEncoding::GetFontIndex(unsigned long code) const
{
    const auto found = std::ranges::find_if(
        codeSpaceRanges, [code](const CodeSpaceRange& range) { return code >= range.low && code <= range.high; });
    return found == codeSpaceRanges.end() ? -1 : found->fontIndex;
}

int FontEncoding::GetIndexOfChar(char32_t character) const
{
    // Each font that uses a large map may ask it.
    Budget::Spend(4 * mapRanges.size());
    for (const auto& [first, range] : mapRanges) {
        if (range.value.count != 1) continue;
        const long long distance = static_cast<long long>(character) - static_cast<long long>(range.value.values[0]);
        if (distance >= 0 && distance <= static_cast<long long>(range.last) - first)
            return static_cast<int>(first + distance);
    }
    return -1;
}

Kernel::Counted<FontEncoding> FontEncoding::AsPrivateUse(Kernel::Counted<const FontEncoding> base) const
{
    constexpr char32_t c_privateUse = 0xF000;
    auto result = Kernel::MakeCounted<FontEncoding>();
    result->codeSpaceRanges = codeSpaceRanges;
    for (const auto& [first, range] : mapRanges) {
        const long long last =
            std::min<long long>(range.last, static_cast<long long>(first) + Limits::c_maxSingleCodes);
        for (long long code = first; code <= last && Budget::Spend(Limits::c_rangeUnits); ++code) {
            const CodeSequence sequence = range.At(static_cast<int>(code));
            const int index = sequence.count == 1 ? base->GetIndexOfChar(sequence.values[0]) : -1;
            const bool isInBase = index >= 1 && index <= 255;
            result->AddMap(static_cast<int>(code),
                           isInBase ? CodeSequence(c_privateUse + static_cast<char32_t>(index)) : sequence);
        }
    }
    result->OnComplete();
    return result;
}

Kernel::Counted<FontEncoding> FontEncoding::GetInverse() const
{
    auto result = Kernel::MakeCounted<FontEncoding>();
    for (const auto& [first, range] : mapRanges) {
        if (range.value.count != 1) continue;
        // Codes and characters count on together, so that a range stays one.
        const auto character = static_cast<int>(range.value.values[0]);
        const long long length = static_cast<long long>(range.last) - first;
        const long long last = std::min<long long>(character + length, 0x7FFFFFFF);
        result->AddMapRange(character, static_cast<int>(last), static_cast<char32_t>(first));
    }
    return result;
}

} // namespace Quillet
