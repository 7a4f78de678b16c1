#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

namespace Kernel {

/// The ten digits that classify a typeface (PANOSE 1). In each, 0 stands for any.
class Panose
{
public:
    enum Kind : unsigned char { Any = 0, NoFit = 1, LatinText = 2, LatinScript = 3, LatinDecorative = 4, Symbol = 5 };

    static constexpr int c_proportion = 3;
    static constexpr unsigned char c_monospaced = 9;

    bool IsEmpty() const { return digits == std::array<unsigned char, 10>{}; }
    bool IsAny(int digit) const { return digits.at(static_cast<std::size_t>(digit)) == 0; }
    bool IsMonospaced() const { return digits[c_proportion] == c_monospaced; }
    Kind GetKind() const { return static_cast<Kind>(digits[0]); }

    /// The first `count` digits, at most ten.
    void Set(const unsigned char* bytes, int count)
    {
        std::copy_n(bytes, std::clamp(count, 0, static_cast<int>(digits.size())), digits.begin());
    }
    void SetKind(Kind kind) { digits[0] = kind; }
    void SetIsMonospaced() { digits[c_proportion] = c_monospaced; }

    friend bool operator==(const Panose&, const Panose&) = default;

    std::array<unsigned char, 10> digits{};
};

} // namespace Kernel
