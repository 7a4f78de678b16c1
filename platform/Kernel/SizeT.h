#pragma once

namespace Kernel {

/// Width and height; the unit is the user's.
template <typename T>
struct SizeT
{
    T width{};
    T height{};

    friend bool operator==(const SizeT&, const SizeT&) = default;
};

} // namespace Kernel
