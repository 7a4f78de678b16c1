#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace Quillet {

/// What one code of a font stands for: up to ten characters. A default one is empty.
struct CodeSequence
{
    static constexpr std::size_t c_capacity = 10;

    CodeSequence() = default;
    explicit CodeSequence(char32_t value) : count(1) { values[0] = value; }

    /// What does not fit is dropped.
    void Add(char32_t value)
    {
        if (count < c_capacity) values[count++] = value;
    }

    /// The sequence `distance` codes further in a range: the last value counts on.
    CodeSequence Advanced(long long distance) const
    {
        CodeSequence result = *this;
        if (count > 0) result.values[count - 1] += static_cast<char32_t>(distance);
        return result;
    }

    /// Whether it says something: several values, or one that stands for a character.
    bool IsGood() const
    {
        if (count != 1) return count > 1;
        return values[0] != 0 && values[0] != 0xFFFD && values[0] != 0xFFFF;
    }

    friend bool operator==(const CodeSequence& a, const CodeSequence& b)
    {
        return a.count == b.count && std::equal(a.values.begin(), a.values.begin() + a.count, b.values.begin());
    }

    std::uint16_t count = 0;
    std::array<char32_t, c_capacity> values{};
};

} // namespace Quillet
