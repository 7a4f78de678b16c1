#pragma once

#include <Kernel/Export.h>

#include <concepts>
#include <string>
#include <type_traits>

namespace Kernel {

/// Decimal digits, the same in every locale.
QUILLET_API std::string ToString(long long value);
QUILLET_API std::string ToString(unsigned long long value);

template <std::integral T>
std::string ToString(T value)
{
    if constexpr (std::is_signed_v<T>) {
        return ToString(static_cast<long long>(value));
    } else {
        return ToString(static_cast<unsigned long long>(value));
    }
}

/// A decimal fraction, without an exponent, that reads back as the same number and has no more places behind the point
/// than that takes.
QUILLET_API std::string ToString(double value);
QUILLET_API std::string ToString(float value);

/// Rounded to `precision` places behind the point, 0 to 17; zeros at the end are dropped and zero has no sign.
QUILLET_API std::string ToString(double value, int precision);

} // namespace Kernel
